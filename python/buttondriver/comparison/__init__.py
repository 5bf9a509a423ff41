# SPDX-License-Identifier: Apache-2.0
"""A screen that must look like a picture."""
