// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt_text.h"

#include "base/encodings.h"

#include <QLineEdit>
#include <QValidator>

namespace morvane {

namespace {

class CodeTextValidator final : public QValidator {
  public:
    using QValidator::QValidator;

    State validate(QString& input, int& /*position*/) const override {
        return from_utf8(input.toStdString()) ? Acceptable : Invalid;
    }
};

QString from_bytes(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

QString shown_text(std::string_view text) {
    const bool is_utf8 = valid_utf8_length(text) == text.size();
    return is_utf8 ? from_bytes(text) : code_text(text);
}

std::string path_bytes(const QString& path) {
    return path.toStdString();
}

std::string code_bytes(const QString& text) {
    std::string bytes;
    for (const QChar character : text) {
        bytes += from_utf8(QString(character).toStdString()).value_or("?");
    }
    return bytes;
}

QString code_text(std::string_view windows1252) {
    return from_bytes(to_utf8(windows1252));
}

void accept_code_text_only(QLineEdit* field) {
    field->setValidator(new CodeTextValidator(field));
}

QString dialog_filter(const QString& filter) {
    const QString name = filter.section(QLatin1Char('|'), 0, 0);
    const QString patterns = filter.section(QLatin1Char('|'), 1);
    return name + QStringLiteral(" (") +
           QString(patterns).replace(QLatin1Char(';'), QLatin1Char(' ')) +
           QStringLiteral(");;All files (*)");
}

} // namespace morvane
