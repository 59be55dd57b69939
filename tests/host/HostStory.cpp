#include "host/HostStory.h"

#include "support/ChildProcess.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

#include <functional>
#include <optional>

namespace kovalin::test {

namespace {

void walk(const QJsonObject& item, const std::function<void(const QJsonObject&)>& visit)
{
    visit(item);
    for (const QJsonValue& child : item[u"children"].toArray()) {
        walk(child.toObject(), visit);
    }
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QByteArray StoryFiles::read(const QString& file) const
{
    QByteArray bytes = contentOf(_folder + u'/' + file);
    EXPECT_FALSE(bytes.isEmpty()) << "no " << file.toStdString();
    return bytes;
}

QList<QJsonObject> StoryFiles::items(const QString& tree, const QString& id) const
{
    QList<QJsonObject> found;
    const auto take = [&](const QJsonObject& item) {
        if (item[u"visible"].toBool() && (item[u"id"].toString() == id || item[u"class"].toString() == id)) {
            found.append(item);
        }
    };
    const QJsonObject picker = QJsonDocument::fromJson(read(tree + QStringLiteral(".json"))).object();
    walk(picker, take);
    for (const QJsonValue& other : picker[u"others"].toArray()) {
        walk(other.toObject(), take);
    }
    return found;
}

QStringList StoryFiles::texts(const QString& tree, const QString& id) const
{
    QStringList texts;
    for (const QJsonObject& item : items(tree, id)) {
        walk(item, [&texts](const QJsonObject& part) {
            if (const QString text = part[u"text"].toString(); !text.isEmpty() && part[u"visible"].toBool()) {
                texts.append(text);
            }
        });
    }
    texts.sort();
    return texts;
}

QStringList StoryFiles::ownTexts(const QString& tree, const QString& id) const
{
    QStringList texts;
    for (const QJsonObject& item : items(tree, id)) {
        if (const QString text = item[u"text"].toString(); !text.isEmpty()) {
            texts.append(text);
        }
    }
    return texts;
}

QJsonObject StoryFiles::events(const QString& name) const
{
    return QJsonDocument::fromJson(read(name + QStringLiteral("-events.json"))).object();
}

QStringList StoryFiles::analytics(const QString& name) const
{
    QStringList names;
    for (const QJsonValue& event : events(name)[u"analytics"].toArray()) {
        names.append(event[u"event"].toString());
    }
    return names;
}

QList<QJsonObject> StoryFiles::fields(const QString& name, const QString& event) const
{
    QList<QJsonObject> fields;
    for (const QJsonValue& one : events(name)[u"analytics"].toArray()) {
        if (one[u"event"].toString() == event) {
            fields.append(one[u"fields"].toObject());
        }
    }
    return fields;
}

QStringList StoryFiles::sessions(const QString& name, const QString& event) const
{
    QStringList sessions;
    for (const QJsonObject& one : fields(name, event)) {
        sessions.append(sessionOf(one));
    }
    return sessions;
}

QString StoryFiles::sessionOf(const QJsonObject& fields)
{
    return fields[u"kovalin_kit_event_base"][u"sticker_picker_session_id"].toString();
}

QList<QJsonObject> StoryFiles::calls(const QString& name, const QString& call) const
{
    QList<QJsonObject> calls;
    for (const QJsonValue& one : events(name)[u"delegate"].toArray()) {
        if (one[u"call"].toString() == call) {
            calls.append(one.toObject());
        }
    }
    return calls;
}

QByteArray StoryFiles::picture(const QString& name) const
{
    return read(name + QStringLiteral(".png"));
}

int HostStory::run(const QByteArray& script, const QStringList& options)
{
    const QString file = path(QStringLiteral("script.txt"));
    QFile out(file);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(script) == script.size());
    out.close();
    // Through a shell for the errors' sake.
    const QString errorFile = path(QStringLiteral("errors.txt"));
    QStringList arguments{QStringLiteral("-c"),
                          QStringLiteral("errors=$1; shift; exec \"$@\" 2>\"$errors\""),
                          QStringLiteral("sh"),
                          errorFile,
                          QStringLiteral(KOVALIN_HOST_PROGRAM),
                          QStringLiteral("--script"),
                          file,
                          QStringLiteral("--out"),
                          path(QStringLiteral("out")),
                          QStringLiteral("--content"),
                          QStringLiteral(KOVALIN_EXAMPLE_CONTENT),
                          QStringLiteral("--offscreen"),
                          QStringLiteral("--reduced-motion")};
    ChildProcess host(QStringLiteral("/bin/sh"), arguments + options);
    host.closeInput();
    static_cast<void>(host.readAll());
    const std::optional<int> exitCode = host.waitForExit();
    errors = contentOf(errorFile);
    return exitCode.value_or(-1);
}

void HostStory::play(const QString& name, const QStringList& options)
{
    const QByteArray script = contentOf(QStringLiteral(KOVALIN_HOST_STORIES) + u'/' + name + QStringLiteral(".txt"));
    ASSERT_FALSE(script.isEmpty()) << name.toStdString();
    ASSERT_EQ(run(script, options), 0) << errors.toStdString();
    EXPECT_TRUE(errors.isEmpty()) << errors.toStdString();
    const QByteArray log = contentOf(path(QStringLiteral("out/log.txt")));
    EXPECT_FALSE(log.contains("qrc:/kovalin-host")) << "the window complains:\n" << log.toStdString();
}

} // namespace kovalin::test
