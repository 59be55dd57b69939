#include "kits/core/QXSDKURLOpener.h"

#include "support/QtPrinting.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtGui/QDesktopServices>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

/// Takes addresses of a scheme in place of the system.
class UrlHandler final : public QObject {
    Q_OBJECT

public:
    explicit UrlHandler(const QString& scheme)
        : _scheme(scheme)
    {
        QDesktopServices::setUrlHandler(_scheme, this, "open");
    }
    ~UrlHandler() override { QDesktopServices::unsetUrlHandler(_scheme); }
    Q_DISABLE_COPY_MOVE(UrlHandler)

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened.append(url.toString()); }

private:
    const QString _scheme;
};

namespace {

class OtherOpener final : public QXSDKURLOpener {
public:
    [[nodiscard]] bool canOpenURL(const QUrl&) override { return true; }
    void openURL(const QUrl&, Completion) override {}
};

class QXSDKURLOpenerTest : public testing::Test {
protected:
    ~QXSDKURLOpenerTest() override { QXSDKURLOpener::setShared(nullptr); }
};

TEST_F(QXSDKURLOpenerTest, theSystemOpensPagesMailAndFiles)
{
    const auto opener = QXSDKURLOpener::shared();
    ASSERT_NE(opener, nullptr);
    for (const char* const url : {"https://example.com/a", "HTTP://example.com", "mailto:a@example.com", "file:///a"}) {
        EXPECT_TRUE(opener->canOpenURL(QUrl(QString::fromLatin1(url)))) << url;
    }
}

TEST_F(QXSDKURLOpenerTest, ofOtherAppsTheSystemDoesNotKnow)
{
    const auto opener = QXSDKURLOpener::shared();
    for (const char* const url : {"kovalin-sdk://", "itms-apps://store.example", "", "no address", "//host/path"}) {
        EXPECT_FALSE(opener->canOpenURL(QUrl(QString::fromLatin1(url)))) << url;
    }
}

TEST_F(QXSDKURLOpenerTest, opensWhatTheSystemHasSomebodyFor)
{
    const UrlHandler handler(QStringLiteral("kovalin-test"));
    QList<bool> told;
    const QUrl url(QStringLiteral("kovalin-test://a/b?c=d"));
    QXSDKURLOpener::shared()->openURL(url, [&](bool isOpened) { told.append(isOpened); });
    QXSDKURLOpener::shared()->openURL(url, {});
    EXPECT_EQ(handler.opened, QStringList({url.toString(), url.toString()}));
    EXPECT_EQ(told, QList<bool>({true}));
}

TEST_F(QXSDKURLOpenerTest, anAddressThatIsNoneIsNotOpened)
{
    QList<bool> told;
    QXSDKURLOpener::shared()->openURL(QUrl(), [&](bool isOpened) { told.append(isOpened); });
    EXPECT_EQ(told, QList<bool>({false}));
}

TEST_F(QXSDKURLOpenerTest, isReplacedAndComesBack)
{
    const auto system = QXSDKURLOpener::shared();
    const auto other = std::make_shared<OtherOpener>();
    QXSDKURLOpener::setShared(other);
    EXPECT_EQ(QXSDKURLOpener::shared(), other);
    QXSDKURLOpener::setShared(nullptr);
    EXPECT_EQ(QXSDKURLOpener::shared(), system);
}

} // namespace

#include "QXSDKURLOpenerTest.moc"
