#include "learned_search/generated-src/Exceptions.h"

#include "ScriptedExecutors.h"
#include "learned_search/generated-src/LearnedSearchClassifierConversion.h"
#include "learned_search/generated-src/ModelCacheExecutorConversion.h"
#include "learned_search/generated-src/ModelCoordinatorConversion.h"
#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "platform/foundation/PlatformException.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace djinni;
using namespace kovalin::test;
using kovalin::platform::PlatformException;

namespace {

/// No std::exception.
struct Strange {
    int number;
};

/// A standard exception with nothing to say.
struct Mute final : std::exception {
    const char* what() const noexcept override { return nullptr; }
};

/// A platform exception of a kind of its own.
struct SpecialException final : PlatformException {
    using PlatformException::PlatformException;
};

/// Native objects of which every operation fails in one way.
class ThrowingClassifier final : public vole::learned_search::LearnedSearchClassifier {
public:
    explicit ThrowingClassifier(std::function<void()> fail)
        : _fail(std::move(fail))
    {
    }
    std::vector<std::int32_t> predict(const std::string&, std::int32_t) const override { return _fail(), _comics; }
    std::vector<std::string> getAutocompleteSuggestions(const std::string&) const override { return _fail(), _texts; }
    bool modelIsInitialized() const override { return _fail(), true; }

private:
    std::function<void()> _fail;
    std::vector<std::int32_t> _comics;
    std::vector<std::string> _texts;
};

class ThrowingBuffer final : public vole::learned_search::ModelFileBuffer {
public:
    explicit ThrowingBuffer(std::function<void()> fail)
        : _fail(std::move(fail))
    {
    }
    std::int64_t getAddress() const override { return _fail(), 0; }
    std::int64_t getSize() const override { return _fail(), 0; }
    bool stateIsValid() const override { return _fail(), true; }
    void dispose() override { _fail(); }

private:
    std::function<void()> _fail;
};

class ThrowingCoordinator final : public vole::learned_search::ModelCoordinator {
public:
    explicit ThrowingCoordinator(std::function<void()> fail)
        : _fail(std::move(fail))
    {
    }
    std::shared_ptr<vole::learned_search::ModelFileBuffer> getModel(const std::string&) override
    {
        return _fail(), nullptr;
    }
    bool updateLocalModel(const std::string&) override { return _fail(), true; }

private:
    std::function<void()> _fail;
};

/// Every operation of every wrapper, on native objects that fail so.
std::vector<std::function<void()>> operationsThat(const std::function<void()>& fail)
{
    const auto classifier = LearnedSearchClassifierConversion::fromCpp(std::make_shared<ThrowingClassifier>(fail));
    const auto buffer = ModelFileBufferConversion::fromCpp(std::make_shared<ThrowingBuffer>(fail));
    const auto coordinator = ModelCoordinatorConversion::fromCpp(std::make_shared<ThrowingCoordinator>(fail));
    return {
        [=] { static_cast<void>(classifier->predict(u"dog"_s, 1)); },
        [=] { static_cast<void>(classifier->getAutocompleteSuggestions(u"dog"_s)); },
        [=] { static_cast<void>(classifier->modelIsInitialized()); },
        [=] { static_cast<void>(QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer)); },
        [=] { static_cast<void>(buffer->getAddress()); },
        [=] { static_cast<void>(buffer->getSize()); },
        [=] { static_cast<void>(buffer->stateIsValid()); },
        [=] { buffer->dispose(); },
        [=] { static_cast<void>(coordinator->getModel(u"LearnedSearch"_s)); },
        [=] { static_cast<void>(coordinator->updateLocalModel(u"LearnedSearch"_s)); },
    };
}

/// The platform exception that `operation` raises; fails without one.
PlatformException raisedBy(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const PlatformException& exception) {
        return exception;
    }
    ADD_FAILURE() << "nothing was raised";
    return {QString(), QString()};
}

void expectRaised(const std::function<void()>& operation, const QString& name, const QString& reason)
{
    const PlatformException exception = raisedBy(operation);
    EXPECT_EQ(exception.name(), name);
    EXPECT_EQ(exception.reason(), reason);
}

} // namespace

TEST(Exceptions, OfTheStandardBecomeThePlatformsWithTheNativeTextOutOfEveryOperation)
{
    for (const auto& operation : operationsThat([] { throw std::length_error("100% of %s, %1 and %@: \xC3\xBC"); })) {
        expectRaised(operation, u"100% of %s, %1 and %@: \u00FC"_s, u"100% of %s, %1 and %@: \u00FC"_s);
    }
}

TEST(Exceptions, OfExhaustedMemoryCarryTheirTextToo)
{
    const QString text = QString::fromUtf8(std::bad_alloc().what());
    for (const auto& operation : operationsThat([] { throw std::bad_alloc(); })) {
        expectRaised(operation, text, text);
    }
}

TEST(Exceptions, WithoutATextBecomeThePlatformsWithAnEmptyOne)
{
    for (const auto& operation : operationsThat([] { throw Mute(); })) {
        expectRaised(operation, QString(), QString());
    }
}

TEST(Exceptions, OfAnyOtherTypeCarryOnUnchanged)
{
    for (const auto& operation : operationsThat([] { throw Strange{4711}; })) {
        try {
            operation();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const Strange& strange) {
            EXPECT_EQ(strange.number, 4711);
        }
    }
    for (const auto& operation : operationsThat([] { throw 42; })) {
        EXPECT_THROW(operation(), int);
    }
}

TEST(Exceptions, OfThePlatformCarryOnUnchanged)
{
    for (const auto& operation : operationsThat([] { throw PlatformException(u"Name"_s, u"Reason"_s); })) {
        expectRaised(operation, u"Name"_s, u"Reason"_s);
    }
    for (const auto& operation : operationsThat([] { throw SpecialException(u"Name"_s, u"Reason"_s); })) {
        EXPECT_THROW(operation(), SpecialException) << "with its type";
    }
}

TEST(Exceptions, OutOfExecutorsReachTheCallerOfTheWrapper)
{
    const auto cache = std::make_shared<ScriptedCacheExecutor>();
    const auto update = std::make_shared<ScriptedUpdateExecutor>();
    const auto coordinator = QXNativeModelCoordinator::modelCoordinatorInstance(cache, update);
    const auto getModel = [&] {
        static_cast<void>(coordinator->getModel(u"m"_s));
    };
    const auto updateLocalModel = [&] {
        static_cast<void>(coordinator->updateLocalModel(u"m"_s));
    };

    update->before = [] {
        throw PlatformException(u"ServerException"_s, u"out of order"_s);
    };
    expectRaised(updateLocalModel, u"ServerException"_s, u"out of order"_s);
    EXPECT_FALSE(cache->stored);

    cache->before = [] {
        throw PlatformException(u"DiskException"_s, u"full"_s);
    };
    expectRaised(getModel, u"DiskException"_s, u"full"_s);
    expectRaised(updateLocalModel, u"DiskException"_s, u"full"_s);

    cache->before = [] {
        throw std::runtime_error("native");
    };
    expectRaised(getModel, u"native"_s, u"native"_s);

    cache->before = [] {
        throw Strange{1};
    };
    EXPECT_THROW(getModel(), Strange);

    cache->before = nullptr;
    EXPECT_NO_THROW(getModel()) << "nothing is left of a failure";
}

TEST(Exceptions, AreNotTranslatedByProxies)
{
    const auto cache = std::make_shared<ScriptedCacheExecutor>();
    cache->before = [] {
        throw std::range_error("as it is");
    };

    EXPECT_THROW(static_cast<void>(ModelCacheExecutorConversion::toCpp(cache)->getCachedModelMetaData("m")),
                 std::range_error);
}

TEST(Exceptions, LeaveTheContextOutOfTheMessage)
{
    expectRaised(
        [] {
            try {
                throw std::runtime_error("text");
            } catch (...) {
                throwNSExceptionFromCurrent("Class operation:");
            }
        },
        u"text"_s, u"text"_s);
}

TEST(Exceptions, TellWhatIsUnimplemented)
{
    expectRaised([] { throwUnimplemented(u"predict 100%1 %@"_s); }, u"NSInternalInconsistencyException"_s,
                 u"Unimplemented: predict 100%1 %@"_s);
}

TEST(Exceptions, AreNoneWhereTheCallReturns)
{
    EXPECT_EQ(guarded("", [] { return 7; }), 7);
}
