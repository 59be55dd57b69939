// Model files that break the format's rules one by one: each is refused with one line, or read without harm.
#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/search_model_generated.h"
#include "support/CheckedModel.h"
#include "support/SmallModel.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

testing::AssertionResult isTreatedRightly(const Bytes& file)
{
    const auto result = test::isTreatedRightly(file, smallModelQuestions());
    return result ? isTreatedRightlyOnDisk(file, smallModelQuestions()) : result;
}

/// Refused with one line, answering nothing.
testing::AssertionResult isRefused(const Bytes& file)
{
    if (inspectModel(file).verifies) {
        return testing::AssertionFailure() << "the file is good";
    }
    return isTreatedRightly(file);
}

/// Good enough to be read, whatever it answers.
testing::AssertionResult isRead(const Bytes& file)
{
    if (!inspectModel(file).verifies) {
        return testing::AssertionFailure() << "the file is bad";
    }
    return isTreatedRightly(file);
}

/// The small model after a change.
template <typename Change>
Bytes changed(Change&& change)
{
    Bytes file = smallModel().toFile();
    FilePlaces places(file);
    change(places);
    return file;
}

TEST(BrokenModel, IsNotTheSmallModelItself)
{
    const Bytes file = smallModel().toFile();
    ASSERT_TRUE(inspectModel(file).canBePredictedWith());
    EXPECT_TRUE(isRead(file));
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(bufferOf(file));
    EXPECT_EQ(classifier->predict("good", 10), (std::vector<std::int32_t>{7, 9}));
    EXPECT_EQ(classifier->getAutocompleteSuggestions("go"), (std::vector<std::string>{"good morning", "good"}));
}

TEST(BrokenModel, MayBeOfAnyShortLength)
{
    const Bytes model = smallModel().toFile();
    for (std::size_t length = 0; length <= 64; ++length) {
        SCOPED_TRACE(length);
        EXPECT_TRUE(isRefused(Bytes(length, 0xFF)));
        EXPECT_TRUE(isRefused(Bytes(model.begin(), model.begin() + static_cast<std::ptrdiff_t>(length))));
        // From five zeros on they are a table without fields, at the very beginning.
        EXPECT_TRUE(length < 5 ? isRefused(Bytes(length)) : isRead(Bytes(length)));
    }
}

/// A file with so many comics and keys, which are all the same.
Bytes fileOfManyTables(std::size_t comics, std::size_t keys)
{
    flatbuffers::FlatBufferBuilder builder;
    const std::vector comicOffsets(comics, CreatepriorEntry(builder, 7, 0.5F));
    const std::vector keyOffsets(keys, CreateentryInfoForWordDirect(builder, "good", 0, 0));
    const auto comicsOffset = builder.CreateVector(comicOffsets);
    const auto keysOffset = builder.CreateVector(keyOffsets);
    const auto rowsOffset = builder.CreateVectorOfStructs(std::vector<probEntry>());
    builder.Finish(CreateSearchModel(builder, rowsOffset, comicsOffset, keysOffset));
    return {builder.GetBufferPointer(), builder.GetBufferPointer() + builder.GetSize()};
}

TEST(BrokenModel, HasOneTableTooMany)
{
    struct Tables {
        std::size_t comics;
        std::size_t keys;
    };
    for (const auto [comics, keys] : {Tables{999'999, 0}, Tables{0, 999'999}, Tables{499'999, 500'000}}) {
        SCOPED_TRACE(comics);
        const Bytes most = fileOfManyTables(comics, keys);
        ASSERT_TRUE(inspectModel(most).verifies);
        EXPECT_TRUE(test::isTreatedRightly(most, {}));
        const Bytes more = fileOfManyTables(comics > 0 ? comics + 1 : 0, comics > 0 ? keys : keys + 1);
        ASSERT_FALSE(inspectModel(more).verifies);
        EXPECT_TRUE(test::isTreatedRightly(more, smallModelQuestions()));
    }
}

TEST(BrokenModel, HasAKeyWithoutWord)
{
    for (std::size_t key = 0; key < 4; ++key) {
        ModelContent model = smallModel();
        model.keys->at(key).word.reset();
        EXPECT_TRUE(isRefused(model.toFile()));
    }
}

TEST(BrokenModel, HasAWordWithoutItsZero)
{
    for (std::size_t key = 0; key < 4; ++key) {
        const auto overwrite = [key](FilePlaces& places) {
            const std::size_t word = places.word(key);
            places.write(word + 4 + places.read<std::uint32_t>(word), 'x');
        };
        EXPECT_TRUE(isRefused(changed(overwrite)));
    }
}

TEST(BrokenModel, HasAWordWhoseZeroWouldStandBehindTheFile)
{
    Bytes file = smallModel().toFile();
    FilePlaces places(file);
    const std::size_t word = places.word(0);
    const auto toTheEnd = static_cast<std::uint32_t>(file.size() - word - 4);
    for (const std::uint32_t length : {toTheEnd - 1, toTheEnd, toTheEnd + 1}) {
        SCOPED_TRACE(length);
        places.write(word, length);
        file.back() = 0;
        EXPECT_TRUE(length < toTheEnd ? isRead(file) : isRefused(file));
    }
}

TEST(BrokenModel, HasOffsetsThatLeadAnywhere)
{
    Bytes file = smallModel().toFile();
    const auto size = static_cast<std::uint32_t>(file.size());
    FilePlaces places(file);
    for (const std::size_t place : places.offsets()) {
        SCOPED_TRACE(place);
        const auto right = places.read<std::uint32_t>(place);
        const auto toTheEnd = static_cast<std::uint32_t>(size - place);
        // Behind the end, or too near to it for what should stand there.
        for (const std::uint32_t offset : {toTheEnd - 3, toTheEnd - 1, toTheEnd, toTheEnd + 1, size, 0x7FFF'FFFFU,
                                           0x8000'0000U, 0xFFFF'FFFCU, 0xFFFF'FFFFU}) {
            places.write(place, offset);
            EXPECT_TRUE(isRefused(file)) << offset;
        }
        // To itself, to what isn't aligned, into the middle of what is meant, and all else.
        for (std::uint32_t offset = 0; offset < toTheEnd; ++offset) {
            places.write(place, offset);
            EXPECT_TRUE(test::isTreatedRightly(file, smallModelQuestions())) << offset;
        }
        places.write(place, right);
    }
}

TEST(BrokenModel, HasLengthsThatOverflow)
{
    Bytes file = smallModel().toFile();
    FilePlaces places(file);
    for (const std::size_t vector : {places.rows(), places.comics(), places.keys(), places.word(0), places.word(2)}) {
        SCOPED_TRACE(vector);
        const auto right = places.read<std::uint32_t>(vector);
        // Among them those that become small when they are multiplied by the size of an element, or when it is added.
        for (const std::uint32_t length :
             {static_cast<std::uint32_t>(file.size()), 0x0FFF'FFFFU, 0x1000'0000U, 0x1FFF'FFFFU, 0x2000'0000U,
              0x2000'0001U, 0x3FFF'FFFFU, 0x4000'0000U, 0x4000'0001U, 0x7FFF'FFFEU, 0x7FFF'FFFFU, 0x8000'0000U,
              0xFFFF'FFF0U, 0xFFFF'FFFCU, 0xFFFF'FFFFU}) {
            places.write(vector, length);
            EXPECT_TRUE(isRefused(file)) << length;
        }
        places.write(vector, right);
    }
}

TEST(BrokenModel, HasVtablesOutsideOfTheFile)
{
    Bytes file = smallModel().toFile();
    const auto size = static_cast<std::int32_t>(file.size());
    FilePlaces places(file);
    for (const std::size_t table : places.tables()) {
        SCOPED_TRACE(table);
        const auto right = places.read<std::int32_t>(table);
        const auto fromTheBeginning = static_cast<std::int32_t>(table);
        for (const std::int32_t back :
             {fromTheBeginning + 1, fromTheBeginning + 2, fromTheBeginning - size, fromTheBeginning - size + 1,
              std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
            places.write(table, back);
            EXPECT_TRUE(isRefused(file)) << back;
        }
        for (std::int32_t back = fromTheBeginning - size; back <= fromTheBeginning; ++back) {
            places.write(table, back);
            EXPECT_TRUE(test::isTreatedRightly(file, smallModelQuestions())) << back;
        }
        places.write(table, right);
    }
}

TEST(BrokenModel, HasVtablesOfImpossibleSize)
{
    Bytes file = smallModel().toFile();
    FilePlaces places(file);
    for (const std::size_t table : places.tables()) {
        SCOPED_TRACE(table);
        const std::size_t vtable = places.vtable(table);
        const auto right = places.read<std::uint16_t>(vtable);
        const auto toTheEnd = static_cast<std::uint16_t>(file.size() - vtable);
        const auto behindTheEnd = static_cast<std::uint16_t>(toTheEnd + 2 - toTheEnd % 2);
        for (const std::uint16_t size :
             {std::uint16_t{1}, static_cast<std::uint16_t>(right - 1), static_cast<std::uint16_t>(right + 1),
              behindTheEnd, std::uint16_t{0x7FFE}, std::uint16_t{0xFFFE}, std::uint16_t{0xFFFF}}) {
            places.write(vtable, size);
            EXPECT_TRUE(isRefused(file)) << size;
        }
        for (std::uint16_t size = 0; size <= toTheEnd; ++size) {
            places.write(vtable, size);
            EXPECT_TRUE(isTreatedRightly(file)) << size;
        }
        places.write(vtable, right);
    }
}

TEST(BrokenModel, HasFieldsOutsideOfTheFile)
{
    Bytes file = smallModel().toFile();
    FilePlaces places(file);
    for (const std::size_t table : places.tables()) {
        const std::size_t vtable = places.vtable(table);
        for (std::size_t slot = vtable + 4; slot < vtable + places.read<std::uint16_t>(vtable); slot += 2) {
            SCOPED_TRACE(slot);
            const auto right = places.read<std::uint16_t>(slot);
            const auto toTheEnd = static_cast<std::uint16_t>(file.size() - table);
            for (const std::uint16_t offset : {static_cast<std::uint16_t>(toTheEnd - 3), toTheEnd,
                                               std::uint16_t{0x7FFF}, std::uint16_t{0x8000}, std::uint16_t{0xFFFF}}) {
                places.write(slot, offset);
                EXPECT_TRUE(isRefused(file)) << offset;
            }
            for (std::uint16_t offset = 0; offset < toTheEnd; ++offset) {
                places.write(slot, offset);
                EXPECT_TRUE(test::isTreatedRightly(file, smallModelQuestions())) << offset;
            }
            places.write(slot, right);
        }
    }
}

TEST(BrokenModel, HasTablesThatAreEachOther)
{
    const Bytes right = smallModel().toFile();
    Bytes file = right;
    FilePlaces places(file);
    const std::vector<std::size_t> things{places.root(), places.rows(),   places.comics(), places.keys(),
                                          places.key(0), places.comic(0), places.word(0)};
    for (const std::size_t place : places.offsets()) {
        for (const std::size_t thing : things) {
            SCOPED_TRACE(testing::Message() << place << " to " << thing);
            // What lies before is reached by an offset that wraps around, which no reader may follow.
            places.write(place, static_cast<std::uint32_t>(thing - place));
            EXPECT_TRUE(isTreatedRightly(file));
            file = right;
        }
    }
}

TEST(BrokenModel, LacksVectors)
{
    for (unsigned absent = 0; absent < 8; ++absent) {
        SCOPED_TRACE(absent);
        ModelContent model = smallModel();
        if (absent & 1U) {
            model.rows.reset();
        }
        if (absent & 2U) {
            model.comics.reset();
        }
        if (absent & 4U) {
            model.keys.reset();
        }
        const auto inspection = inspectModel(model.toFile());
        EXPECT_EQ(inspection.hasRows, (absent & 1U) == 0);
        EXPECT_EQ(inspection.hasComics, (absent & 2U) == 0);
        EXPECT_EQ(inspection.hasKeys, (absent & 4U) == 0);
        EXPECT_TRUE(isRead(model.toFile()));
    }
}

TEST(BrokenModel, HasNumbersThatAreNone)
{
    using Limits = std::numeric_limits<float>;
    constexpr std::array odd{Limits::infinity(),
                             -Limits::infinity(),
                             Limits::quiet_NaN(),
                             Limits::signaling_NaN(),
                             Limits::max(),
                             Limits::denorm_min(),
                             0.0F,
                             -0.0F};
    for (const float number : odd) {
        SCOPED_TRACE(number);
        for (std::size_t row = 0; row < 6; ++row) {
            ModelContent model = smallModel();
            model.rows->at(row).prob = number;
            EXPECT_TRUE(isRead(model.toFile())) << row;
        }
        for (std::size_t key = 0; key < 4; ++key) {
            ModelContent model = smallModel();
            model.keys->at(key).wordPrior = number;
            EXPECT_TRUE(isRead(model.toFile())) << key;
            model.keys->at(key).endWordScore = number;
            EXPECT_TRUE(isRead(model.toFile())) << key;
        }
        EXPECT_TRUE(isRead(changed([number](FilePlaces& places) {
            places.write(places.field(places.comic(1), 1), number); // the prior, which nothing reads
        })));
    }
}

TEST(BrokenModel, HasManyPopularitiesThatAreNone)
{
    // As many as sorting needs before it takes its fast path, which trusts the order.
    ModelContent model;
    for (int key = 0; key < 200; ++key) {
        model.add(std::to_string(1000 + key), {},
                  key % 3 == 0 ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(key % 7), 1);
    }
    EXPECT_TRUE(test::isTreatedRightly(model.toFile(), {{"1"}, {"10"}, {"11"}}));
}

TEST(BrokenModel, IsReadWhereNothingIsAligned)
{
    const Bytes file = smallModel().toFile();
    for (std::size_t misalignment = 1; misalignment < 8; ++misalignment) {
        const auto buffer = std::make_shared<MemoryBuffer>(file, misalignment);
        EXPECT_EQ(firstFault(buffer, inspectModel(file), smallModelQuestions()), std::nullopt) << misalignment;
    }
}

} // namespace
