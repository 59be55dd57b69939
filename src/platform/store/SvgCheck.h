#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace kovalin::platform {

/// Why an SVG document must not be given to Qt's reader, which opens local files that a document names, draws as often as it is
/// told, and walks through its tree by recursion; absent if it may. Any thread.
///
/// Refused are: what isn't well-formed, entities of its own, style sheets of its own files, pictures, fonts and anything else
/// taken from outside of the document, and a document that is too deep, has too many elements, or draws too many by repetition.
[[nodiscard]] std::optional<QString> defectOfSvg(const QByteArray& bytes);

} // namespace kovalin::platform
