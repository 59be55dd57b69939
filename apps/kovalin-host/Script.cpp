#include "kovalin-host/Script.h"

#include "kovalin-backend/AnswerRule.h"
#include "shared/BadInput.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QKeySequence>

#include <algorithm>
#include <optional>
#include <variant>

namespace kovalin::host {

namespace {

/// A command with its arguments, as its usage writes them: "[…]" may be left out, "a|b" is one of the words, and a name in upper
/// case says what is to stand there.
struct Command {
    QString name;
    QStringList arguments = {};
};

const QList<Command>& commands()
{
    const auto with = [](const char* line) {
        QStringList words = QString::fromLatin1(line).split(u' ');
        const QString name = words.takeFirst();
        return Command{name, words};
    };
    static const QList<Command> all{
        with("wait MS"),
        with("wait-for ID [MS]"),
        with("wait-gone ID [MS]"),
        with("wait-event WORD [MS]"),
        with("wait-log TEXT"),
        with("settle [MS]"),
        with("type TEXT"),
        with("key KEY"),
        with("tap ID"),
        with("tap-at X Y"),
        with("scroll DY"),
        with("term replace|blend [TEXT]"),
        with("friend WORD"),
        with("login"),
        with("logout"),
        with("background"),
        with("foreground"),
        with("clock SECONDS"),
        with("appear"),
        with("disappear"),
        with("hide"),
        with("show"),
        with("clip W H"),
        with("unclip"),
        with("window own|other"),
        with("resize W H"),
        with("picker N"),
        with("theme light|dark"),
        with("direction ltr|rtl"),
        with("backend RULE"),
        with("screenshot NAME"),
        with("tree NAME"),
        with("events NAME"),
    };
    return all;
}

bool isWholeLine(const QString& kind)
{
    return kind == u"TEXT" || kind == u"[TEXT]" || kind == u"RULE";
}

bool isNumber(const QString& text, int least, int most)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= least && number <= most;
}

/// What is wrong with an argument; empty for nothing.
QString faultOf(const QString& kind, const QString& value)
{
    constexpr int mostMillis = 600'000; // ten minutes: longer is a mistake
    constexpr int mostPoints = 100'000;
    constexpr int mostSeconds = 1'000'000'000;
    static const QRegularExpression fileName(QStringLiteral("^[A-Za-z0-9][A-Za-z0-9_.-]*$"));
    if (kind == u"MS") {
        return isNumber(value, 0, mostMillis) ? QString()
                                              : QStringLiteral("%1 is no number of milliseconds").arg(value);
    }
    if (kind == u"W" || kind == u"H" || kind == u"X" || kind == u"Y") {
        return isNumber(value, 0, mostPoints) ? QString() : QStringLiteral("%1 is no number of points").arg(value);
    }
    if (kind == u"DY") {
        return isNumber(value, -mostPoints, mostPoints) ? QString()
                                                        : QStringLiteral("%1 is no number of points").arg(value);
    }
    if (kind == u"SECONDS") {
        return isNumber(value, -mostSeconds, mostSeconds) ? QString()
                                                          : QStringLiteral("%1 is no number of seconds").arg(value);
    }
    if (kind == u"N") {
        return isNumber(value, 1, 2) ? QString() : QStringLiteral("there is no picker %1").arg(value);
    }
    if (kind == u"NAME") {
        return fileName.match(value).hasMatch() ? QString() : QStringLiteral("%1 is no name for a file").arg(value);
    }
    if (kind == u"KEY") {
        const auto keys = QKeySequence::fromString(value, QKeySequence::PortableText);
        return keys.count() == 1 && keys[0].key() != Qt::Key_unknown ? QString()
                                                                     : QStringLiteral("there is no key %1").arg(value);
    }
    if (kind == u"RULE") {
        const auto read = backend::PathRule::fromText(value.toUtf8());
        const auto* const fault = std::get_if<QString>(&read);
        return fault ? *fault : QString();
    }
    if (kind.contains(u'|')) {
        return kind.split(u'|').contains(value) ? QString() : QStringLiteral("%1 is none of %2").arg(value, kind);
    }
    return {};
}

/// Takes the first argument off the line; absent where there is none.
std::optional<QString> takeArgument(QString& line)
{
    line = line.trimmed();
    if (line.isEmpty()) {
        return std::nullopt;
    }
    QString argument;
    bool isQuoted = false;
    qsizetype at = 0;
    for (; at < line.size() && (isQuoted || !line[at].isSpace()); ++at) {
        if (line[at] == u'"') {
            isQuoted = !isQuoted;
        } else {
            argument.append(line[at]);
        }
    }
    line.remove(0, at);
    return argument;
}

std::optional<QString> takeValue(const QString& kind, QString& line)
{
    if (!isWholeLine(kind)) {
        return takeArgument(line);
    }
    const QString value = line.trimmed();
    line.clear();
    return value.isEmpty() ? std::nullopt : std::optional(value);
}

/// Throws a QString with what is wrong.
QStringList argumentsOf(const Command& command, QString line)
{
    const QString usage = QStringLiteral("usage: ") + (QStringList(command.name) + command.arguments).join(u' ');
    QStringList values;
    for (const QString& kind : command.arguments) {
        const bool isOptional = kind.startsWith(u'[');
        const auto value = takeValue(kind, line);
        if (!value && !isOptional) {
            throw usage;
        }
        const QString bareKind = isOptional ? kind.sliced(1).chopped(1) : kind;
        if (const QString fault = value ? faultOf(bareKind, *value) : QString(); !fault.isEmpty()) {
            throw QString(command.name + QStringLiteral(": ") + fault);
        }
        values.append(value.value_or(QString()));
    }
    if (!line.trimmed().isEmpty()) {
        throw usage;
    }
    return values;
}

} // namespace

std::string scriptFault(const QString& file, int line, const QString& what)
{
    return QStringLiteral("%1:%2: ").arg(file).arg(line).toStdString() + what.toStdString();
}

std::vector<ScriptStep> readScript(const QByteArray& text, const QString& file)
{
    std::vector<ScriptStep> steps;
    int number = 0;
    for (const QByteArray& bytes : text.split('\n')) {
        ++number;
        QString line = QString::fromUtf8(bytes).trimmed();
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        const QString name = line.section(u' ', 0, 0);
        const auto command = std::ranges::find(commands(), name, &Command::name);
        if (command == commands().end()) {
            throw cli::BadInput(scriptFault(file, number, QStringLiteral("there is no command %1").arg(name)));
        }
        try {
            steps.push_back({number, name, argumentsOf(*command, line.sliced(name.size()))});
        } catch (const QString& fault) {
            throw cli::BadInput(scriptFault(file, number, fault));
        }
    }
    return steps;
}

} // namespace kovalin::host
