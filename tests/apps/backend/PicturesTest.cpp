#include "apps/backend/BackendFixture.h"
#include "apps/backend/RawClient.h"
#include "platform/store/DecodeImage.h"
#include "support/QtPrinting.h"

#include <vector>

namespace kovalin::test {
namespace {

const QString kSolo = QStringLiteral("/stickers/hi/alex-1.png");
const QString kPair = QStringLiteral("/stickers/hug/alex-1/bea-2.png");
const QString kIcon = QStringLiteral("/avatars/alex-1.png");

class Pictures : public BackendFixture {
protected:
    Pictures() { writeTemplates("hello!"); }

    void writeTemplates(const QByteArray& caption) const
    {
        content.write(QStringLiteral("templates.json"),
                      R"({"templates":[{"id":"hi","expression":"cheerful","caption":")" + caption +
                          R"("},{"id":"hug","expression":"happy","pose":"hug","friend":{"expression":"happy"}}]})");
    }

    [[nodiscard]] QImage picture(const QString& path)
    {
        const TaskEnd end = get(path);
        EXPECT_EQ(end.status(), 200) << end.data.constData();
        QString problem;
        const QImage image = platform::decodeImage(end.data, &problem);
        EXPECT_FALSE(image.isNull()) << problem.toStdString();
        return image;
    }
};

TEST_F(Pictures, AreDrawnAtTheSizeThatIsAskedFor)
{
    for (const QString& path : {kSolo, kPair, kIcon}) {
        EXPECT_EQ(picture(path).size(), QSize(320, 320)) << path.toStdString();
        for (const int size : {16, 64, 200, 1024}) {
            EXPECT_EQ(picture(QStringLiteral("%1?size=%2").arg(path).arg(size)).size(), QSize(size, size))
                << path.toStdString();
        }
        EXPECT_EQ(picture(path + QStringLiteral("?size=1")).size(), QSize(16, 16)) << path.toStdString();
        EXPECT_EQ(picture(path + QStringLiteral("?size=-5")).size(), QSize(16, 16)) << path.toStdString();
        EXPECT_EQ(picture(path + QStringLiteral("?size=9999")).size(), QSize(1024, 1024)) << path.toStdString();
        EXPECT_EQ(get(path + QStringLiteral("?size=big")).status(), 400) << path.toStdString();
        EXPECT_EQ(get(path + QStringLiteral("?size=")).status(), 400) << path.toStdString();
    }
}

TEST_F(Pictures, MayBeCached)
{
    const TaskEnd end = get(kSolo);
    EXPECT_EQ(end.response->header("Content-Type"), "image/png");
    EXPECT_EQ(end.response->header("Cache-Control"), "public, max-age=86400");
    EXPECT_EQ(get(kSolo).data, end.data);
}

TEST_F(Pictures, ShowWhoIsAskedFor)
{
    EXPECT_NE(picture(kSolo), picture(QStringLiteral("/stickers/hi/robin-7.png")));
    EXPECT_NE(picture(kPair), picture(QStringLiteral("/stickers/hug/alex-1/chris-3.png")));
    EXPECT_NE(picture(kIcon), picture(QStringLiteral("/avatars/robin-7.png")));
    EXPECT_EQ(get(QStringLiteral("/avatars/%E2%98%83%2F..%2F.png")).status(), 200);
}

TEST_F(Pictures, ComeForTheTemplatesAsTheyAreNow)
{
    const QImage before = picture(kSolo);
    writeTemplates("howdy!");
    EXPECT_NE(picture(kSolo), before);
    writeTemplates("hello!");
    EXPECT_EQ(picture(kSolo), before);
}

TEST_F(Pictures, AreNotFoundWhereTheAddressIsWrong)
{
    for (const char* path : {"/stickers/none/alex-1.png", "/stickers/hi/alex-1", "/stickers/hi/alex-1.jpg",
                             "/stickers/hi/alex-1/bea-2.png", "/stickers/hug/alex-1.png", "/stickers/hug/alex-1/bea-2",
                             "/stickers/hug/alex-1/%25s.png", "/avatars/alex-1", "/avatars/", "/stickers/hi"}) {
        const TaskEnd end = get(QString::fromLatin1(path));
        EXPECT_EQ(end.status(), 404) << path;
        EXPECT_EQ(end.data.count('\n'), 1) << path;
    }
    EXPECT_EQ(post(kSolo, "x").status(), 405);
}

TEST_F(Pictures, AreNotFoundWithoutTemplates)
{
    const ContentFiles empty;
    const backend::Backend other({.contentFolder = empty.path()});
    EXPECT_EQ(fetch(session, {.url = other.url(kSolo)}).status(), 404);
    EXPECT_EQ(fetch(session, {.url = other.url(kIcon)}).status(), 200);
}

TEST_F(Pictures, FailWithTheNameOfAFileOfAnotherForm)
{
    for (const char* text : {"", "{}", R"({"templates":[{"id":"hi","expression":"odd"}]})"}) {
        content.write(QStringLiteral("templates.json"), text);
        for (int i = 0; i < 2; ++i) {
            const TaskEnd end = get(kSolo);
            EXPECT_EQ(end.status(), 500) << text;
            EXPECT_TRUE(end.data.contains("/templates.json: ")) << text;
        }
    }
    writeTemplates("back");
    EXPECT_EQ(get(kSolo).status(), 200);
}

TEST_F(Pictures, ComeManyAtOnce)
{
    std::vector<TaskEndBox> boxes;
    for (int i = 0; i < 60; ++i) {
        boxes.push_back(start(QStringLiteral("/stickers/hi/avatar-%1.png?size=64").arg(i % 20)));
    }
    EXPECT_EQ(get(QStringLiteral("/api/configs")).status(), 200);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const TaskEnd end = boxes[i].wait();
        EXPECT_EQ(end.status(), 200);
        EXPECT_EQ(end.data, boxes[i % 20].wait().data);
    }
}

TEST_F(Pictures, CanBeToldToFailLikeAllElse)
{
    rule("/stickers/* 503");
    EXPECT_EQ(get(kSolo).status(), 503);
    rule("/stickers/hi/* cut");
    EXPECT_EQ(get(kSolo).kind(), "ConnectionLost");
    rule("/stickers/hi/* delay 1");
    EXPECT_EQ(get(kSolo).status(), 200);
    rule("/avatars/* garbage");
    EXPECT_TRUE(platform::decodeImage(get(kIcon).data).isNull());
    rule("/avatars/* with size=40");
    EXPECT_EQ(picture(kIcon + QStringLiteral("?size=64")).size(), QSize(40, 40));
}

TEST_F(Pictures, MayBeUnderWayWhenTheBackendEnds)
{
    for (int round = 0; round < 10; ++round) {
        backend::Backend other({.contentFolder = content.path()});
        std::vector<TaskEndBox> boxes(6);
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const QString path = QStringLiteral("/stickers/hi/%1.png").arg(i);
            session.dataTask({.url = other.url(path)}, boxes[i].handler())->resume();
        }
        other.waitForRequests(1);
    }
}

} // namespace
} // namespace kovalin::test
