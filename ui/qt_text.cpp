#include "ui/qt_text.h"

#include <QTextDocument>

namespace korvadex {

QString LinesToQt(const std::string& text) {
    return ToQt(text).replace("\r\n", "\n");
}

QString PlainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? "<p style='white-space:pre'>" + text.toHtmlEscaped() + "</p>" : text;
}

} // namespace korvadex
