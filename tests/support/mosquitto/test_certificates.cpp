// SPDX-License-Identifier: Apache-2.0
#include "support/mosquitto/test_certificates.h"

#include <QHostAddress>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

namespace buttondriver::test {

namespace {

void openssl(const QString &arguments) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(QStringLiteral("openssl"), arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
  ASSERT_TRUE(process.waitForFinished(60'000)) << "openssl does not run";
  EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
}

// The machine's own file is not read.
const QString request =
    QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -config %1 "
                   "-subj /CN=%2 -keyout %3.key -out %3.crt");

} // namespace

TestCertificates::TestCertificates() {
  _folder.write("openssl.cnf", "[req]\ndistinguished_name = name\n[name]\n");
  openssl(
      request.arg(path(QStringLiteral("openssl.cnf")), QStringLiteral("authority"), path(QStringLiteral("authority"))) +
      QStringLiteral(" -addext basicConstraints=critical,CA:TRUE"));
}

QString TestCertificates::path(const QString &name) const {
  return QString::fromStdString(_folder.path(name.toStdString()));
}

QString TestCertificates::authority() const { return path(QStringLiteral("authority.crt")); }

TestCertificates::Files TestCertificates::issue(const QString &host) const {
  const QString kind = QHostAddress(host).isNull() ? QStringLiteral("DNS:") : QStringLiteral("IP:");
  openssl(request.arg(path(QStringLiteral("openssl.cnf")), host, path(host)) +
          QStringLiteral(" -CA %1.crt -CAkey %1.key -addext subjectAltName=").arg(path(QStringLiteral("authority"))) +
          kind + host);
  return {path(host + QStringLiteral(".crt")), path(host + QStringLiteral(".key"))};
}

} // namespace buttondriver::test
