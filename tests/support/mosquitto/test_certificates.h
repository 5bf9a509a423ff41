// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/temporary_folder.h"

#include <QString>

namespace buttondriver::test {

/// Certificates of an authority that only this object knows, made by openssl into a folder that goes with it.
class TestCertificates {
public:
  struct Files {
    QString certificate;
    QString key;
  };

  TestCertificates();

  /// The authority's own certificate.
  QString authority() const;
  /// A certificate for `host`, a name or an address, which is also who it belongs to.
  Files issue(const QString &host) const;

private:
  QString path(const QString &name) const;

  TemporaryFolder _folder;
};

} // namespace buttondriver::test
