// Between the texts and measures of the program (UTF-8, CR LF, twips) and those of Qt.
#pragma once

#include <QString>

#include <string>

namespace korvadex {

inline constexpr double TwipsPerPixel = 15; // device-independent pixels

inline QString ToQt(const std::string& text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}
inline std::string FromQt(const QString& text) {
    return text.toStdString();
}

// Lines of a message, ended as widgets want them.
QString LinesToQt(const std::string& text);

// For setToolTip, which takes a text such as "C:\<b>\x" for markup: shown as it stands.
QString PlainToolTip(const QString& text);

} // namespace korvadex
