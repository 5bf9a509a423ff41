// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/results/junit_report.h"

#include "buttonctl/session/console.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

QString seconds(qint64 milliseconds) { return QString::number(static_cast<double>(milliseconds) / 1000, 'f', 3); }

void write_attribute(QXmlStreamWriter &xml, const char *name, const QString &value) {
  // Control characters are not allowed in XML, not even as references.
  xml.writeAttribute(QLatin1String(name), as_one_line(value));
}

void write_totals(QXmlStreamWriter &xml, const std::vector<TestResult> &results) {
  qint64 milliseconds = 0;
  for (const TestResult &result : results)
    milliseconds += result.milliseconds;
  const auto failed = std::count_if(results.begin(), results.end(),
                                    [](const TestResult &result) { return result.failure.has_value(); });
  write_attribute(xml, "name", QStringLiteral("buttonctl test"));
  write_attribute(xml, "tests", QString::number(results.size()));
  write_attribute(xml, "failures", QString::number(failed));
  write_attribute(xml, "errors", QStringLiteral("0"));
  write_attribute(xml, "time", seconds(milliseconds));
}

void write_case(QXmlStreamWriter &xml, const TestResult &result) {
  xml.writeStartElement(QStringLiteral("testcase"));
  write_attribute(xml, "classname", QStringLiteral("scenario"));
  write_attribute(xml, "name", result.file);
  write_attribute(xml, "assertions", QString::number(result.expectations));
  write_attribute(xml, "time", seconds(result.milliseconds));
  if (result.failure) {
    xml.writeStartElement(QStringLiteral("failure"));
    write_attribute(xml, "message", *result.failure);
    for (const QString &name : result.kept)
      xml.writeCharacters(as_one_line(result.folder + QLatin1Char('/') + name) + QLatin1Char('\n'));
    xml.writeEndElement();
  }
  xml.writeEndElement();
}

} // namespace

QByteArray junit_report(const std::vector<TestResult> &results) {
  QByteArray text;
  QXmlStreamWriter xml(&text);
  xml.setAutoFormatting(true);
  xml.setAutoFormattingIndent(2);
  xml.writeStartDocument();
  xml.writeStartElement(QStringLiteral("testsuites"));
  write_totals(xml, results);
  xml.writeStartElement(QStringLiteral("testsuite"));
  write_totals(xml, results);
  for (const TestResult &result : results)
    write_case(xml, result);
  xml.writeEndDocument();
  return text;
}

} // namespace buttondriver::buttonctl
