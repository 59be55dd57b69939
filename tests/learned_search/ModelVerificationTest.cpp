#include "learned_search/ModelVerification.h"

#include "learned_search/LearnedSearchClassifierImpl.h"
#include "learned_search/search_model_generated.h"
#include "support/GeneratedModels.h"
#include "support/RecordingLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using vole::test::RecordingLogger;

namespace {

constexpr std::size_t mostTables = 1'000'000;

bool verifies(const Bytes& file)
{
    return verifiedModel(MemoryBuffer(file)) != nullptr;
}

bool verifies(const ModelContent& model)
{
    return verifies(model.toFile());
}

ModelContent someModel()
{
    return ModelContent().list({7, 9}).add("dog", {{7, 0.5F}, {9, 0.9F}}, 1, 1);
}

ModelContent someModelWith(bool rows, bool comics, bool keys)
{
    ModelContent model = someModel();
    if (!rows) {
        model.rows.reset();
    }
    if (!comics) {
        model.comics.reset();
    }
    if (!keys) {
        model.keys.reset();
    }
    return model;
}

/// The same model with an identifier, four bytes or another number of them, behind the root's offset. All other offsets are
/// relative and stay.
Bytes withIdentifier(Bytes file, const Bytes& identifier)
{
    flatbuffers::uoffset_t root = 0;
    std::memcpy(&root, file.data(), sizeof root);
    root += static_cast<flatbuffers::uoffset_t>(identifier.size());
    std::memcpy(file.data(), &root, sizeof root);
    file.insert(file.begin() + sizeof root, identifier.begin(), identifier.end());
    return file;
}

/// A small file of as many tables as are asked for: each list names one table over and over.
Bytes modelOfSharedTables(std::size_t comics, std::size_t keys)
{
    flatbuffers::FlatBufferBuilder builder;
    const std::vector comicTables(comics, CreatepriorEntry(builder, 7, 0.5F));
    const std::vector keyTables(keys, CreateentryInfoForWord(builder, builder.CreateString("dog")));
    const auto comicsOffset = builder.CreateVector(comicTables);
    const auto keysOffset = builder.CreateVector(keyTables);
    builder.Finish(CreateSearchModel(builder, 0, comicsOffset, keysOffset));
    return {builder.GetBufferPointer(), builder.GetBufferPointer() + builder.GetSize()};
}

/// Where the only copy of a text stands in a file.
std::size_t placeOf(const std::string& text, const Bytes& file)
{
    const auto found = std::search(file.begin(), file.end(), text.begin(), text.end());
    EXPECT_NE(found, file.end());
    return static_cast<std::size_t>(found - file.begin());
}

/// A page that stops the program when it is read.
class UnreadablePage final {
public:
    UnreadablePage()
        : _size(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)))
        , _page(::mmap(nullptr, _size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
    }
    ~UnreadablePage() { ::munmap(_page, _size); }
    UnreadablePage(const UnreadablePage&) = delete;
    UnreadablePage& operator=(const UnreadablePage&) = delete;

    [[nodiscard]] std::int64_t address() const
    {
        return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(_page));
    }

private:
    std::size_t _size;
    void* _page;
};

/// A buffer that says of itself what a test wants.
class ClaimingBuffer final : public ModelFileBuffer {
public:
    ClaimingBuffer(std::int64_t address, std::int64_t size)
        : _address(address)
        , _size(size)
    {
    }

    [[nodiscard]] std::int64_t getAddress() const override { return _address; }
    [[nodiscard]] std::int64_t getSize() const override { return _size; }
    [[nodiscard]] bool stateIsValid() const override { return true; }
    void dispose() override {}

private:
    std::int64_t _address;
    std::int64_t _size;
};

} // namespace

TEST(ModelVerification, AcceptsAModelAtTheBeginningOfItsBuffer)
{
    const auto buffer = bufferOf(someModel());

    const SearchModel* model = verifiedModel(*buffer);

    ASSERT_TRUE(model);
    EXPECT_EQ(model, GetSearchModel(reinterpret_cast<const void*>(buffer->getAddress())));
    EXPECT_TRUE(hasAllVectors(*model));
}

TEST(ModelVerification, DoesntLookAtAnIdentifier)
{
    const Bytes plain = someModel().toFile();
    EXPECT_TRUE(verifies(plain));
    for (const char* identifier : {"SRCH", "KOVA", "\xFF\xFF\xFF\xFF", "\n\r\t|", "1234"}) {
        SCOPED_TRACE(identifier);
        const Bytes file = withIdentifier(plain, {identifier, identifier + 4});
        EXPECT_TRUE(verifies(file));
        EXPECT_THAT(LearnedSearchClassifierImpl(bufferOf(file)).predict("dog", 10), ElementsAre(9, 7));
    }
    EXPECT_TRUE(verifies(withIdentifier(plain, Bytes(4, 0))));
}

TEST(ModelVerification, DoesntLookAtTheAlignmentOfFields)
{
    for (const std::size_t shift : {1U, 2U, 3U}) {
        SCOPED_TRACE(shift);
        const Bytes file = withIdentifier(someModel().toFile(), Bytes(shift, 0xFF));
        EXPECT_TRUE(verifies(file));
        EXPECT_THAT(LearnedSearchClassifierImpl(bufferOf(file)).predict("dog", 10), ElementsAre(9, 7));
    }
}

TEST(ModelVerification, AcceptsAMillionTablesAndNotOneMore)
{
    constexpr std::size_t half = mostTables / 2;
    EXPECT_TRUE(verifies(modelOfSharedTables(mostTables - 1, 0)));
    EXPECT_TRUE(verifies(modelOfSharedTables(0, mostTables - 1)));
    EXPECT_TRUE(verifies(modelOfSharedTables(half, half - 1)));

    EXPECT_FALSE(verifies(modelOfSharedTables(mostTables, 0)));
    EXPECT_FALSE(verifies(modelOfSharedTables(0, mostTables)));
    EXPECT_FALSE(verifies(modelOfSharedTables(half, half)));
}

TEST(ModelVerification, CountsTablesOfTheirOwnToo)
{
    ModelContent model = ModelContent().add("dog", {{7, 0.5F}});
    model.comics->assign(mostTables - 2, 7); // the other two: the root and the key
    EXPECT_TRUE(verifies(model));

    model.list({7});
    EXPECT_FALSE(verifies(model));
}

TEST(ModelVerification, AcceptsAbsentVectorsOfWhichTheClassifierTells)
{
    for (const bool hasRows : {false, true}) {
        for (const bool hasComics : {false, true}) {
            for (const bool hasKeys : {false, true}) {
                SCOPED_TRACE(testing::Message() << hasRows << hasComics << hasKeys);
                const bool hasAll = hasRows && hasComics && hasKeys;
                const auto buffer = bufferOf(someModelWith(hasRows, hasComics, hasKeys));
                const RecordingLogger logger;

                const SearchModel* model = verifiedModel(*buffer);
                ASSERT_TRUE(model);
                EXPECT_EQ(hasAllVectors(*model), hasAll);

                const LearnedSearchClassifierImpl classifier(buffer);
                EXPECT_TRUE(classifier.modelIsInitialized());
                EXPECT_EQ(classifier.predict("dog", 10).size(), hasAll ? 2U : 0U);
                EXPECT_EQ(classifier.getAutocompleteSuggestions("d").size(), hasKeys ? 1U : 0U);
                EXPECT_EQ(classifier.wordExistsInDict("dog"), hasKeys);
                EXPECT_EQ(logger.lines().size(), hasAll ? 0U : 1U);
            }
        }
    }
}

TEST(ModelVerification, AcceptsAnEmptyDictionary)
{
    const RecordingLogger logger;
    const LearnedSearchClassifierImpl classifier(bufferOf(ModelContent().list({7})));

    EXPECT_TRUE(classifier.modelIsInitialized());
    EXPECT_THAT(classifier.predict("dog", 10), IsEmpty());
    EXPECT_THAT(classifier.getAutocompleteSuggestions("dog"), IsEmpty());
    EXPECT_THAT(logger.lines(), IsEmpty());
}

// Its root is at offset 0, and the table there has no fields: nothing that is tested is wrong with it.
TEST(ModelVerification, TakesZerosForAModelWithoutAnything)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(Bytes(64, 0)));

    EXPECT_TRUE(classifier.modelIsInitialized());
    EXPECT_THAT(classifier.predict("dog", 10), IsEmpty());
    EXPECT_THAT(classifier.getAutocompleteSuggestions("dog"), IsEmpty());
}

TEST(ModelVerification, RefusesAWordWithoutItsZero)
{
    Bytes file = someModel().toFile();
    ASSERT_TRUE(verifies(file));
    file[placeOf("dog", file) + 3] = 's';

    EXPECT_FALSE(verifies(file));
}

TEST(ModelVerification, RefusesAWordWhoseZeroLiesBehindTheFile)
{
    Bytes file = someModel().toFile();
    ASSERT_EQ(placeOf("dog", file) + 4, file.size()) << "the word isn't the last in the file";
    file.pop_back();

    EXPECT_FALSE(verifies(file));
}

TEST(ModelVerification, RefusesAKeyWithoutAWord)
{
    ModelContent model = someModel();
    model.keys->push_back({std::nullopt, 0, 1, 0, 0});

    EXPECT_FALSE(verifies(model));
}

TEST(ModelVerification, DoesntLookAtOrderOrSlices)
{
    ModelContent unsorted = ModelContent().list({7}).add("dog", {}).add("cat", {}).add("cat", {});
    EXPECT_TRUE(verifies(unsorted));
    ModelContent outside = ModelContent().list({7});
    outside.keys->push_back({"cat", -5, 3, 0, 0});
    outside.keys->push_back({"dog", 1000, std::numeric_limits<std::int32_t>::max(), 0, 0});
    EXPECT_TRUE(verifies(outside));
}

TEST(ModelVerification, RefusesEveryTruncation)
{
    const Bytes file = someModel().toFile();
    for (std::size_t size = 0; size < file.size(); ++size) {
        EXPECT_FALSE(verifies(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    }
}

// Whatever is damaged: the model is refused, or it is read within its bounds.
TEST(ModelVerification, DamagedFilesAreReadWithinTheirBounds)
{
    const Bytes file = ModelContent()
                           .list({7, 9})
                           .add("cat", {{7, 0.5F}}, 0.5F, 1)
                           .add("cat|dog", {{9, 0.5F}}, 0.2F, 1)
                           .add("dog", {{7, 0.1F}, {9, 0.9F}}, 0.1F, 1)
                           .toFile();
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (const int value : {0, 1, 2, 4, 0x7F, 0x80, 0xFC, 0xFF}) {
            Bytes damaged = file;
            damaged[at] = static_cast<std::uint8_t>(value);
            const LearnedSearchClassifierImpl classifier(bufferOf(damaged));
            for (const char* query : {"c", "cat", "cat dog", "dog"}) {
                static_cast<void>(classifier.getAutocompleteSuggestions(query));
                static_cast<void>(classifier.generateWordNgrams({query, "dog"}, 2));
            }
        }
    }
}

TEST(ModelVerification, AMisalignedModelAnswersLikeAnAlignedOne)
{
    Random random(31);
    const ModelContent model = generateModel(random, {.comics = 100, .keys = 100});
    const Bytes file = model.toFile();
    const LearnedSearchClassifierImpl aligned(bufferOf(file));
    ASSERT_TRUE(aligned.modelIsInitialized());
    for (const std::size_t misalignment : {1U, 2U, 3U}) {
        SCOPED_TRACE(misalignment);
        const LearnedSearchClassifierImpl misaligned(std::make_shared<MemoryBuffer>(file, misalignment));
        ASSERT_TRUE(misaligned.modelIsInitialized());
        for (int query = 0; query < 50; ++query) {
            const std::string text = generateQuery(random, model, 5);
            SCOPED_TRACE(text);
            EXPECT_EQ(misaligned.predict(text, 1000), aligned.predict(text, 1000));
            EXPECT_EQ(misaligned.getAutocompleteSuggestions(text), aligned.getAutocompleteSuggestions(text));
        }
    }
}

TEST(ModelVerification, RefusesUnusableBuffersWithoutReadingThem)
{
    constexpr std::int64_t twoGibibytes = std::int64_t{1} << 31;
    constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
    const UnreadablePage page;
    for (const std::int64_t size :
         {std::int64_t{0}, std::int64_t{3}, std::int64_t{-1}, -greatest, twoGibibytes - 1, twoGibibytes, greatest}) {
        EXPECT_FALSE(verifiedModel(ClaimingBuffer(page.address(), size))) << size;
    }
    for (const std::int64_t noAddress : {0, -1}) {
        EXPECT_FALSE(verifiedModel(ClaimingBuffer(noAddress, 4096))) << noAddress;
    }
}

TEST(ModelVerification, AClassifierOnAnUnusableBufferLogsOneLine)
{
    const UnreadablePage page;
    const RecordingLogger logger;

    const LearnedSearchClassifierImpl classifier(
        std::make_shared<ClaimingBuffer>(page.address(), std::int64_t{1} << 31));

    EXPECT_FALSE(classifier.modelIsInitialized());
    EXPECT_THAT(logger.messages(),
                ElementsAre("Model failed verification, please ensure that it adheres to the flatbuffer schema"));
}
