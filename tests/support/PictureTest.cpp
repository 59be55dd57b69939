#include "support/PictureTest.h"

#include "support/ReferencePicture.h"
#include "support/TestFont.h"

#include <QtCore/QThreadPool>
#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>

namespace kovalin::test {

using namespace std::chrono_literals;

void PictureTest::SetUpTestSuite()
{
    ViewTest::SetUpTestSuite();
    QGuiApplication::styleHints()->setCursorFlashTime(0); // 0 is a cursor that stays
}

PictureTest::PictureTest() = default;

PictureTest::~PictureTest()
{
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

void PictureTest::SetUp()
{
    const QString missing = installTestFont();
    if (missing.isEmpty()) {
        return;
    }
    if (qEnvironmentVariable("CI") == QStringLiteral("true")) {
        FAIL() << missing.toStdString();
    }
    GTEST_SKIP() << missing.toStdString();
}

void PictureTest::show(const Surroundings& surroundings,
                       const std::function<std::shared_ptr<platform::View>()>& newView)
{
    QGuiApplication::setLayoutDirection(surroundings.direction);
    window().setColor(surroundings.background);
    window().resize(surroundings.size);
    ASSERT_TRUE(waitFor([&] { return window().contentItem()->size() == QSizeF(surroundings.size); }));
    root()->setFrame(QRectF(QPointF(), surroundings.size));
    const auto view = newView();
    view->setFrame(root()->bounds());
    root()->addSubview(view);
    static_cast<void>(grab()); // lays out, so that what is tapped is in its place
}

QImage PictureTest::pictureAfterNextWork()
{
    static_cast<void>(grab()); // lays out, whereupon pictures are prepared on the global queue
    QThreadPool::globalInstance()->waitForDone();
    drainMainQueue();
    _time.step(1s); // longer than any animation of a view
    return grab();
}

QImage PictureTest::settledPicture()
{
    constexpr int maxRounds = 50;
    QImage last = pictureAfterNextWork();
    for (int round = 0; round < maxRounds; ++round) {
        QImage next = pictureAfterNextWork();
        if (next == last) {
            return next;
        }
        last = std::move(next);
    }
    ADD_FAILURE() << "what is drawn never comes to rest";
    return last;
}

testing::AssertionResult PictureTest::looksAs(const QString& scene, const QString& name)
{
    const int wholeRatio = qRound(ratio());
    const QString suffix = wholeRatio > 1 ? QStringLiteral(".ratio_%1").arg(wholeRatio) : QString();
    return matchesReference(settledPicture(), scene, name + suffix);
}

} // namespace kovalin::test
