#pragma once

#include <QString>

namespace velmora {

// The readable text of an HTML document: markup, scripts and styles gone,
// block ends as line breaks, character references decoded.
QString HtmlToText(const QString& html);

} // namespace velmora
