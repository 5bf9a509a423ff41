# SPDX-License-Identifier: Apache-2.0
"""Pictures, the files that hold them, and what of them goes to the panel."""
