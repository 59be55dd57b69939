#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace kovalin::test {

/// What a script left behind.
class StoryFiles final {
public:
    explicit StoryFiles(const QString& folder)
        : _folder(folder)
    {
    }

    /// The items of a `tree`, of that class or with that identifier, in all roots; as on screen only where `visible`.
    [[nodiscard]] QList<QJsonObject> items(const QString& tree, const QString& id) const;
    [[nodiscard]] bool has(const QString& tree, const QString& id) const { return !items(tree, id).isEmpty(); }
    /// The texts of such items and of all that lies in them, but for empty ones; sorted, as cells come in any order.
    [[nodiscard]] QStringList texts(const QString& tree, const QString& id) const;

    /// The texts of such items alone, but for empty ones.
    [[nodiscard]] QStringList ownTexts(const QString& tree, const QString& id) const;

    /// What an `events` wrote, whose name has "-events" behind this one.
    [[nodiscard]] QJsonObject events(const QString& name) const;
    /// Of its analytics events the names, in order.
    [[nodiscard]] QStringList analytics(const QString& name) const;
    /// Of its analytics events of a name the fields, in order.
    [[nodiscard]] QList<QJsonObject> fields(const QString& name, const QString& event) const;
    /// The picker sessions of its analytics events of a name, in order.
    [[nodiscard]] QStringList sessions(const QString& name, const QString& event) const;
    /// Of what the delegate was told, those of a kind.
    [[nodiscard]] QList<QJsonObject> calls(const QString& name, const QString& call) const;
    [[nodiscard]] static QString sessionOf(const QJsonObject& fields);

    /// A picture's bytes; empty where there is none.
    [[nodiscard]] QByteArray picture(const QString& name) const;

private:
    [[nodiscard]] QByteArray read(const QString& file) const;

    const QString _folder;
};

/// Stories of a host and its user: scripts that the program `kovalin-host` plays, without a display and without animations, beside a
/// development server in its own process. What they leave is checked here.
class HostStory : public testing::Test {
protected:
    /// Plays stories/NAME.txt; a failure if that doesn't end well.
    void play(const QString& name, const QStringList& options = {});
    /// Runs the program with these lines as its script; gives its exit code, and has its errors in `errors`.
    int run(const QByteArray& script, const QStringList& options = {});

    [[nodiscard]] QString path(const QString& name) const { return _folder.filePath(name); }

    QTemporaryDir _folder;
    StoryFiles files{_folder.filePath(QStringLiteral("out"))};
    QByteArray errors;
};

} // namespace kovalin::test
