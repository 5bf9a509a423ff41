// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/recording_writer.h"

#include <QFile>

#include <cerrno>
#include <cstring>

namespace buttondriver::buttonctl {

Outcome<Done> RecordingWriter::open(const QString &file) {
  _name = file;
  _file.reset(std::fopen(QFile::encodeName(file).constData(), "we"));
  if (!_file)
    return Failure{QStringLiteral("cannot write '%1': %2").arg(file, QString::fromLocal8Bit(std::strerror(errno)))};
  return writeLine(QByteArray(recording_title) + QByteArray::number(recording_version));
}

Outcome<Done> RecordingWriter::write(const RecordedFrame &frame) {
  return writeLine(QByteArray::number(qlonglong{frame.time_us}) + ' ' + QByteArray::number(frame.connection) + ' ' +
                   frame.bytes.toHex());
}

Outcome<Done> RecordingWriter::writeLine(const QByteArray &line) {
  const QByteArray ended = line + '\n';
  const auto size = static_cast<std::size_t>(ended.size());
  if (std::fwrite(ended.constData(), 1, size, _file.get()) != size || std::fflush(_file.get()) != 0)
    return Failure{QStringLiteral("cannot write to '%1': %2").arg(_name, QString::fromLocal8Bit(std::strerror(errno)))};
  return Done{};
}

} // namespace buttondriver::buttonctl
