// What every subcommand that reads a model says of a file that is none.
#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"

#include <QtCore/QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>
#include <string>

using namespace kovalin::test;
using testing::HasSubstr;

namespace {

const QByteArray damaged = "is no search model, or a damaged one";

class KovalinModelFile : public testing::TestWithParam<std::string> {
protected:
    /// What the subcommand is called with before a model file.
    static QStringList arguments()
    {
        QStringList command = QString::fromStdString(GetParam()).split(u' ');
        const bool asksQueries = command.size() == 1;
        if (GetParam() == "search") {
            command += {QStringLiteral("--packs"), examplePacks()};
        }
        return command + (asksQueries ? QStringList{QStringLiteral("--json"), QStringLiteral("--model")}
                                      : QStringList{QStringLiteral("--json")});
    }

    void expectRefused(const QString& path, const QByteArray& fault)
    {
        SCOPED_TRACE(fault.toStdString());
        const auto result = runKovalin(arguments() + QStringList{path}, "smile\n");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(),
                  QByteArray("kovalin: " + path.toUtf8() + ": " + fault + '\n').toStdString());
    }

    void expectContentRefused(const QByteArray& content, const QByteArray& fault)
    {
        expectRefused(files.write(QStringLiteral("model.bin"), content), fault);
    }

    Files files;
};

TEST_P(KovalinModelFile, IsRefusedWhenItCannotBeRead)
{
    expectRefused(files.path(QStringLiteral("missing.bin")), "No such file or directory");
    expectRefused(files.path(QStringLiteral("missing folder/model.bin")), "No such file or directory");
    expectRefused(exampleModel() + QStringLiteral("/model.bin"), "Not a directory");
    expectRefused(QString(), "No such file or directory");

    const QString locked = files.write(QStringLiteral("locked.bin"), modelBytes(smallModel()));
    QFile::setPermissions(locked, {});
    if (!QFile(locked).open(QIODevice::ReadOnly)) { // whoever may read everything can't be refused
        expectRefused(locked, "Permission denied");
    }
}

TEST_P(KovalinModelFile, IsRefusedWhenItIsNoRegularFile)
{
    expectRefused(files.path(QStringLiteral(".")), "Is a directory");
    const QString pipe = files.path(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    expectRefused(pipe, "is no regular file but a pipe");
    expectRefused(QStringLiteral("/dev/null"), "is no regular file but a device");
}

TEST_P(KovalinModelFile, IsRefusedWhenItIsTooShort)
{
    expectContentRefused("", "is empty");
    expectContentRefused("m", "is too short for a search model: 1 byte");
    expectContentRefused("mod", "is too short for a search model: 3 bytes");
    expectContentRefused("mode", damaged);
}

TEST_P(KovalinModelFile, IsRefusedWhenItFailsVerification)
{
    expectContentRefused(QByteArray(1000, '\1'), damaged);
    expectContentRefused(QByteArray(1000, '\xFF'), damaged);
    expectContentRefused("{\"packs\":[]}", damaged);
    const QByteArray good = modelBytes(smallModel());
    for (const qsizetype size : {qsizetype(4), good.size() / 4, good.size() / 2, good.size() - 8}) {
        expectContentRefused(good.first(size), damaged);
    }
    ModelContent wordless = smallModel();
    wordless.keys->front().word.reset();
    expectContentRefused(modelBytes(wordless), damaged);

    std::mt19937 random(1);
    QByteArray noise(4096, '\0');
    for (char& byte : noise) {
        byte = static_cast<char>(random() & 0xFFU);
    }
    expectContentRefused(noise, damaged);
}

TEST_P(KovalinModelFile, IsRefusedInOneLineWhateverItsName)
{
    const auto result = runKovalin(arguments() + QStringList{files.path(QStringLiteral("two\nlines\x1b[31m"))}, "");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors.count('\n'), 1);
    EXPECT_THAT(result.errors.toStdString(), HasSubstr("two?lines?[31m: No such file or directory\n"));
}

TEST_P(KovalinModelFile, IsReadUnderAnyName)
{
    for (const QString& name : {QStringLiteral("[a,b]"), QStringLiteral("näme 😀"), QStringLiteral("two words")}) {
        const auto result =
            runKovalin(arguments() + QStringList{files.write(name, modelBytes(smallModel()))}, "good\n");
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.objects().size(), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachSubcommand, KovalinModelFile,
                         testing::Values("search", "predict", "suggest", "words", "model verify", "model info"),
                         [](const auto& command) { return command.param.substr(command.param.find(' ') + 1); });

} // namespace
