#include "learned_search/ModelFileBuffer.h"

#include "learned_search/LearnedSearchClassifier.h"
#include "support/ModelContent.h"
#include "support/RecordingLogger.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using vole::test::RecordingLogger;
using vole::utils::logging::kErrorLevel;
using vole::utils::logging::Logger;
using vole::utils::logging::LogLevel;

namespace {

constexpr auto bufferTag = "[learned_search][ModelFileBuffer]";
constexpr auto classifierTag = "[learned_search][LearnedSearchClassifierImpl]";
constexpr auto failedVerification = "Model failed verification, please ensure that it adheres to the flatbuffer schema";

constexpr std::int64_t failedMapping = -1;

/// A directory of a test's own.
class TemporaryDirectory final {
public:
    TemporaryDirectory()
        : _path((std::filesystem::temp_directory_path() / "kovalin-models-XXXXXX").string())
    {
        if (!::mkdtemp(_path.data())) {
            throw std::runtime_error("can't make a test's directory");
        }
    }
    ~TemporaryDirectory() { std::filesystem::remove_all(_path); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::string& path() const { return _path; }
    [[nodiscard]] std::string file(const std::string& name) const { return _path + '/' + name; }

private:
    std::string _path;
};

/// A pipe with a name, which can be opened but has no size. One end is held open, since opening the other would wait for it.
class NamedPipe final {
public:
    NamedPipe()
        : _path(_directory.file("pipe"))
    {
        if (::mkfifo(_path.c_str(), S_IRUSR | S_IWUSR) != 0 || (_end = ::open(_path.c_str(), O_RDWR)) < 0) {
            throw std::runtime_error("can't make a test's pipe");
        }
    }
    ~NamedPipe() { ::close(_end); }
    NamedPipe(const NamedPipe&) = delete;
    NamedPipe& operator=(const NamedPipe&) = delete;

    [[nodiscard]] const std::string& path() const { return _path; }

private:
    TemporaryDirectory _directory;
    std::string _path;
    int _end = -1;
};

class ThrowingLogger final : public Logger {
public:
    void log(LogLevel, const std::string&, const std::string& message) override { throw std::runtime_error(message); }
};

Bytes someModel()
{
    return ModelContent().list({7, 9}).add("dog", {{7, 0.5F}, {9, 0.9F}}, 1, 1).toFile();
}

std::shared_ptr<ModelFileBuffer> open(const std::string& path)
{
    return ModelFileBuffer::modelFileBufferInstanceWithPath(path);
}

Bytes mappedBytes(const ModelFileBuffer& buffer)
{
    const auto* first = reinterpret_cast<const std::uint8_t*>(static_cast<std::intptr_t>(buffer.getAddress()));
    return {first, first + buffer.getSize()};
}

bool hasProc()
{
    return std::filesystem::exists("/proc/self/fd") && std::filesystem::exists("/proc/self/maps");
}

/// The open descriptors with what they stand for.
std::map<std::string, std::string> openDescriptors()
{
    std::map<std::string, std::string> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        descriptors[entry.path().filename()] = std::filesystem::read_symlink(entry.path(), gone);
    }
    return descriptors;
}

/// How a file is mapped, as "r--p"; empty where it isn't.
std::string mappingOf(const std::string& path)
{
    std::ifstream maps("/proc/self/maps");
    std::string range;
    std::string permissions;
    std::string rest;
    while (maps >> range >> permissions && std::getline(maps, rest)) {
        if (rest.find(path) != std::string::npos) {
            return permissions;
        }
    }
    return {};
}

/// A classifier must take this buffer for none, without reading through its address.
void expectNoModelIn(const std::shared_ptr<ModelFileBuffer>& buffer)
{
    const RecordingLogger logger;

    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);

    EXPECT_FALSE(classifier->modelIsInitialized());
    EXPECT_THAT(classifier->predict("dog", 10), IsEmpty());
    EXPECT_THAT(classifier->getAutocompleteSuggestions("dog"), IsEmpty());
    EXPECT_THAT(logger.lines(), ElementsAre(RecordingLogger::Line{kErrorLevel, classifierTag, failedVerification}));
}

} // namespace

TEST(ModelFileBuffer, MapsAFileForReading)
{
    const TemporaryFile file(someModel());
    const RecordingLogger logger;

    const auto buffer = open(file.path());

    EXPECT_TRUE(buffer->stateIsValid());
    EXPECT_EQ(buffer->getSize(), static_cast<std::int64_t>(someModel().size()));
    EXPECT_EQ(mappedBytes(*buffer), someModel());
    EXPECT_THAT(logger.lines(), IsEmpty());
    if (hasProc()) {
        EXPECT_EQ(mappingOf(file.path()), "r--p");
    }
}

TEST(ModelFileBuffer, AnAbsentPathIsInvalidWithoutALine)
{
    const RecordingLogger logger;

    const auto buffer = ModelFileBuffer::modelFileBufferInstanceWithPath(std::nullopt);

    ASSERT_TRUE(buffer);
    EXPECT_FALSE(buffer->stateIsValid());
    EXPECT_THAT(logger.lines(), IsEmpty());
}

TEST(ModelFileBuffer, AFileThatCantBeOpenedIsInvalidWithALine)
{
    const TemporaryDirectory directory;
    const TemporaryFile file(someModel());
    for (const std::string& path : {directory.file("missing"), file.path() + "/below-a-file", std::string()}) {
        SCOPED_TRACE(path);
        const RecordingLogger logger;

        const auto buffer = open(path);

        ASSERT_TRUE(buffer);
        EXPECT_FALSE(buffer->stateIsValid());
        EXPECT_THAT(logger.lines(),
                    ElementsAre(RecordingLogger::Line{kErrorLevel, bufferTag, "Unable to read model file"}));
    }
}

TEST(ModelFileBuffer, AFileThatCantBeOpenedFailsSilentlyWithoutALogger)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();

    EXPECT_FALSE(open("/nonexistent/model")->stateIsValid());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ModelFileBuffer, AFileWithoutASizeIsInvalidWithALine)
{
    const NamedPipe pipe;
    const RecordingLogger logger;

    const auto buffer = open(pipe.path());

    EXPECT_FALSE(buffer->stateIsValid());
    EXPECT_THAT(logger.lines(),
                ElementsAre(RecordingLogger::Line{kErrorLevel, bufferTag, "Unable to determine model size"}));
}

TEST(ModelFileBuffer, AnEmptyFileIsValidAndHoldsNoModel)
{
    const TemporaryFile file({});
    const RecordingLogger logger;

    const auto buffer = open(file.path());

    EXPECT_TRUE(buffer->stateIsValid());
    EXPECT_EQ(buffer->getAddress(), failedMapping);
    EXPECT_EQ(buffer->getSize(), 0);
    EXPECT_THAT(logger.lines(), IsEmpty());
    expectNoModelIn(buffer);
}

TEST(ModelFileBuffer, ADirectoryHoldsNoModel)
{
    const TemporaryDirectory directory;
    // Some file systems give their directories a size, others refuse to.
    const int descriptor = ::open(directory.path().c_str(), O_RDONLY | O_CLOEXEC);
    const bool hasSize = ::lseek(descriptor, 0, SEEK_END) >= 0;
    ::close(descriptor);
    const RecordingLogger logger;

    const auto buffer = open(directory.path());

    EXPECT_EQ(buffer->stateIsValid(), hasSize);
    if (!hasSize) {
        EXPECT_THAT(logger.messages(), ElementsAre("Unable to determine model size"));
        return;
    }
    EXPECT_THAT(logger.lines(), IsEmpty());
    EXPECT_EQ(buffer->getAddress(), failedMapping);
    expectNoModelIn(buffer);
}

TEST(ModelFileBuffer, AFileTooSmallForAnyModelHoldsNone)
{
    for (std::size_t size = 1; size <= 8; ++size) {
        SCOPED_TRACE(size);
        const TemporaryFile file(Bytes(size, 0xFF));

        const auto buffer = open(file.path());

        EXPECT_EQ(buffer->getSize(), static_cast<std::int64_t>(size));
        expectNoModelIn(buffer);
    }
}

TEST(ModelFileBuffer, AFileOfTwoGibibytesIsMappedAndHoldsNoModel)
{
    constexpr std::int64_t size = std::int64_t{1} << 31;
    const TemporaryFile file(someModel());
    if (::truncate(file.path().c_str(), size) != 0) { // a hole: it takes no room
        GTEST_SKIP() << "the file system has no files of this size";
    }

    const auto buffer = open(file.path());

    EXPECT_TRUE(buffer->stateIsValid());
    EXPECT_EQ(buffer->getSize(), size);
    expectNoModelIn(buffer);
}

TEST(ModelFileBuffer, ClosesTheDescriptorWhateverComesOfIt)
{
    if (!hasProc()) {
        GTEST_SKIP() << "the system doesn't tell its open descriptors";
    }
    const TemporaryFile model(someModel());
    const TemporaryFile empty({});
    const NamedPipe pipe;
    const auto before = openDescriptors();

    const auto mapped = open(model.path());
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(mappedBytes(*mapped), someModel());

    for (const std::string& path : {empty.path(), pipe.path(), std::string("/nonexistent/model")}) {
        const auto buffer = open(path);
        EXPECT_EQ(openDescriptors(), before) << path;
    }
}

TEST(ModelFileBuffer, LetsALoggersExceptionPassAndClosesTheDescriptor)
{
    const NamedPipe pipe;
    const auto before = hasProc() ? openDescriptors() : std::map<std::string, std::string>();
    vole::utils::logging::setExternalLogger(std::make_shared<ThrowingLogger>());

    EXPECT_THROW(static_cast<void>(open(pipe.path())), std::runtime_error);
    EXPECT_THROW(static_cast<void>(open("/nonexistent/model")), std::runtime_error);

    vole::utils::logging::setExternalLogger(nullptr);
    if (hasProc()) {
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST(ModelFileBuffer, TheMappingOutlivesTheFilesName)
{
    auto file = std::make_unique<TemporaryFile>(someModel());
    const auto buffer = open(file->path());

    file.reset();

    EXPECT_EQ(mappedBytes(*buffer), someModel());
}

TEST(ModelFileBuffer, TheMappingEndsWithTheLastReference)
{
    if (!hasProc()) {
        GTEST_SKIP() << "the system doesn't tell its mappings";
    }
    const TemporaryFile file(someModel());
    auto buffer = open(file.path());
    auto second = buffer;

    buffer.reset();
    EXPECT_EQ(mappingOf(file.path()), "r--p");

    second.reset();
    EXPECT_EQ(mappingOf(file.path()), "");
}

TEST(ModelFileBuffer, AClassifierKeepsTheMapping)
{
    const TemporaryFile file(someModel());
    auto buffer = open(file.path());
    auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);

    buffer.reset();

    EXPECT_THAT(classifier->predict("dog", 10), ElementsAre(9, 7));
    EXPECT_THAT(classifier->getAutocompleteSuggestions("d"), ElementsAre("dog"));
    if (hasProc()) {
        EXPECT_EQ(mappingOf(file.path()), "r--p");
        classifier.reset();
        EXPECT_EQ(mappingOf(file.path()), "");
    }
}

TEST(ModelFileBuffer, AClassifierWithoutAModelKeepsNoMapping)
{
    if (!hasProc()) {
        GTEST_SKIP() << "the system doesn't tell its mappings";
    }
    const TemporaryFile file(Bytes(64, 0xFF));
    auto buffer = open(file.path());
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
    EXPECT_EQ(mappingOf(file.path()), "r--p");

    buffer.reset();

    EXPECT_EQ(mappingOf(file.path()), "");
    EXPECT_FALSE(classifier->modelIsInitialized());
}
