// Model files that were damaged anywhere: byte by byte, cut off, and at several places at once.
#include "support/CheckedModel.h"
#include "support/GeneratedModels.h"
#include "support/SmallModel.h"

#include <gtest/gtest.h>

using namespace vole::learned_search::test;

namespace {

TEST(MutatedModel, IsTreatedRightlyWhicheverByteIsChanged)
{
    const auto questions = smallModelQuestions();
    Bytes file = smallModel().toFile();
    for (std::size_t place = 0; place < file.size(); ++place) {
        const std::uint8_t right = file[place];
        for (unsigned change = 1; change < 256; ++change) {
            file[place] = static_cast<std::uint8_t>(right ^ change);
            ASSERT_TRUE(isTreatedRightly(file, questions)) << place << ": " << unsigned{file[place]};
        }
        file[place] = right;
    }
}

TEST(MutatedModel, IsTreatedRightlyWhereverItIsCutOff)
{
    const Bytes whole = smallModel().toFile();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const Bytes file(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_TRUE(isTreatedRightly(file, smallModelQuestions())) << length;
        ASSERT_TRUE(isTreatedRightlyOnDisk(file, smallModelQuestions())) << length;
    }
}

TEST(MutatedModel, IsTreatedRightlyWhereItsBeginningIsMissing)
{
    const Bytes whole = smallModel().toFile();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const Bytes file(whole.end() - static_cast<std::ptrdiff_t>(length), whole.end());
        ASSERT_TRUE(isTreatedRightly(file, smallModelQuestions())) << length;
    }
}

/// A number as damage and malice leave them: near to what was there, or at an edge.
std::uint32_t damaged(Random& random, std::uint32_t right)
{
    static constexpr std::uint32_t edges[] = {0, 1, 4, 0x7FFF'FFFF, 0x8000'0000, 0xFFFF'FFFF, 0x7FC0'0000, 0x7F80'0000};
    switch (random.below(3)) {
    case 0:
        return right + static_cast<std::uint32_t>(random.below(33)) - 16;
    case 1:
        return right ^ 1U << random.below(32);
    default:
        return edges[random.below(std::size(edges))];
    }
}

TEST(MutatedModel, IsTreatedRightlyWhereSeveralNumbersAreDamaged)
{
    Random random(1);
    const ModelShape shape{.comics = 6, .words = 4, .keys = 8, .rowsPerKey = 3};
    int predicted = 0;
    for (int round = 0; round < 400; ++round) {
        const ModelContent model = generateModel(random, shape);
        const Bytes whole = model.toFile();
        const std::vector<Question> questions{{generateQuery(random, model, 5)}, {generateQuery(random, model, 2), 3}};
        for (int copy = 0; copy < 20; ++copy) {
            Bytes file = whole;
            FilePlaces places(file);
            for (std::size_t damages = 1 + random.below(3); damages > 0; --damages) {
                const std::size_t place = random.below(file.size() / 4) * 4;
                places.write(place, damaged(random, places.read<std::uint32_t>(place)));
            }
            ASSERT_TRUE(isTreatedRightly(file, questions)) << round << ", " << copy;
            predicted += inspectModel(file).canBePredictedWith();
        }
    }
    EXPECT_GT(predicted, 1000); // else the damage would be too great to show anything
}

} // namespace
