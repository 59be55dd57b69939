#pragma once

#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <functional>
#include <memory>

namespace kovalin::test {

/// Shows a view in a window of its own size, and holds what is drawn against a picture that a person has looked at.
///
/// All text is in one font, nothing blinks, and time passes in `settledPicture` alone. Where the font is missing the
/// tests are skipped; with CI=true they fail.
class PictureTest : public ViewTest {
protected:
    struct Surroundings {
        QSize size;                    ///< Of the window, in points.
        QColor background = Qt::white; ///< Of the window.
        Qt::LayoutDirection direction = Qt::LeftToRight;
    };

    static void SetUpTestSuite();

    PictureTest();
    ~PictureTest() override;

    void SetUp() override;

    /// Sets the surroundings up, and then makes the view, which gets the window's size and is laid out. Once a test.
    void show(const Surroundings& surroundings, const std::function<std::shared_ptr<platform::View>()>& newView);

    /// What is drawn once pictures that lie at hand are prepared and all animations have arrived. A test first waits
    /// for what comes by itself, as over the network. A failure of the test if it never comes to rest.
    [[nodiscard]] QImage settledPicture();

    /// `settledPicture` against the reference of the scene's `name` at this pixel ratio: "name.png", and from a ratio
    /// of 2 on "name.ratio_2.png".
    [[nodiscard]] testing::AssertionResult looksAs(const QString& scene, const QString& name);

    [[nodiscard]] ManualAnimationDriver& time() { return _time; }

private:
    QImage pictureAfterNextWork();

    ManualAnimationDriver _time;
};

} // namespace kovalin::test
