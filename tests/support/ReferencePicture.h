#pragma once

#include <QtCore/QString>
#include <QtGui/QImage>

#include <gtest/gtest.h>

namespace kovalin::test {

// Pictures that a person has looked at once, kept as tests/picker/pictures/<scene>/<name>.png, and what is drawn now
// held against them by `PictureDifference`.

/// Whether `actual` looks as its reference. Where it doesn't, or there is none, or one of another size, the failure
/// names the pictures that it leaves below the build's folder: `<name>.actual.png`, `<name>.expected.png` and
/// `<name>.difference.png`.
///
/// With KOVALIN_UPDATE_REFERENCE_PICTURES=1 in the environment `actual` becomes the reference, unless the one there is
/// like it.
[[nodiscard]] testing::AssertionResult matchesReference(const QImage& actual, const QString& scene,
                                                        const QString& name);

/// The same with other folders, for tests of this comparison itself.
struct ReferenceFolders {
    QString references;
    QString failures;
};
[[nodiscard]] testing::AssertionResult matchesReference(const QImage& actual, const QString& scene, const QString& name,
                                                        const ReferenceFolders& folders, bool isUpdating);

/// As small as PNG has it without losing anything: with a palette where 256 colours do. False if the file can't be
/// written.
[[nodiscard]] bool writeSmallPng(const QImage& picture, const QString& path);

} // namespace kovalin::test
