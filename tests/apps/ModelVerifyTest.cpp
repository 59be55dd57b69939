#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace kovalin::test;

namespace {

const QString json = QStringLiteral("--json");

ProgramResult verify(const QString& path, const QStringList& more = {})
{
    return runKovalin(QStringList{QStringLiteral("model"), QStringLiteral("verify"), path} + more);
}

void expectValid(const QString& path)
{
    const auto result = verify(path);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, path.toUtf8() + ": a valid search model\n");
    EXPECT_EQ(result.errors, "");
}

ModelContent modelOfComics(std::size_t count)
{
    ModelContent model;
    model.comics->resize(count);
    std::iota(model.comics->begin(), model.comics->end(), 1);
    return model;
}

TEST(KovalinModelVerify, AcceptsAModel)
{
    Files files;
    expectValid(writeModel(files, smallModel()));
    expectValid(exampleModel());
}

TEST(KovalinModelVerify, PrintsAnObjectOnRequest)
{
    Files files;
    const QString path = files.write(QStringLiteral("m\"o.bin"), modelBytes(smallModel()));
    const auto result = verify(path, {json});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "{\"file\":\"" + path.toUtf8().replace('"', "\\\"") + "\",\"valid\":true}\n");
}

TEST(KovalinModelVerify, AcceptsWhatTheLibraryDoesNotLookAt)
{
    Files files;
    ModelContent odd = smallModel();
    odd.keys->front().start = -7;
    odd.keys->back().count = 1'000'000;
    std::swap(odd.keys->front(), odd.keys->back());
    expectValid(writeModel(files, odd));

    ModelContent bare;
    bare.comics.reset();
    bare.keys.reset();
    bare.rows.reset();
    expectValid(writeModel(files, bare));

    expectValid(files.write(QStringLiteral("longer.bin"), modelBytes(smallModel()) + "more"));
}

TEST(KovalinModelVerify, AcceptsAMillionTablesAndNoMore)
{
    Files files;
    expectValid(writeModel(files, modelOfComics(999'999)));
    const QString path = writeModel(files, modelOfComics(1'000'000));
    const auto result = verify(path, {json});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "kovalin: " + path.toUtf8() + ": has 1000001 tables, at most 1000000 are allowed\n");
}

} // namespace
