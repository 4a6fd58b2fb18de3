// The words of a PDF document, by the program pdftotext. Any thread; blocks the caller.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace chatsum::device {

enum class PdfTextResult { kDone, kNotInstalled, kFailed };

/// Hands the text (UTF-8, lines and columns as on the pages, a form feed behind each page) over piece by piece as it
/// comes. The reader answers false when it wants no more, which is no failure.
[[nodiscard]] PdfTextResult textOfPdf(const std::string& path, const std::function<bool(std::string_view)>& reader);

}  // namespace chatsum::device
