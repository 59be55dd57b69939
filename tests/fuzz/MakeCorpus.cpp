// Writes what the fuzzer starts from: make_model_corpus FOLDER. Models of all kinds that are good or nearly so; the fuzzer
// finds worse ones itself.
#include "fuzz/FuzzInput.h"
#include "support/GeneratedModels.h"
#include "support/SmallModel.h"

#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>

using namespace vole::learned_search::test;

namespace {

class Corpus final {
public:
    explicit Corpus(std::filesystem::path folder)
        : _folder(std::move(folder))
    {
        std::filesystem::create_directories(_folder);
    }

    void add(const std::string& name, const Bytes& model, const std::vector<std::string>& queries,
             std::int8_t topN = 127)
    {
        const Bytes input = fuzzInputBytes(model, queries, topN);
        std::ofstream stream(_folder / name, std::ios::binary);
        stream.write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
        stream.close();
        if (!stream) {
            throw std::runtime_error("can't write " + (_folder / name).string());
        }
    }

private:
    std::filesystem::path _folder;
};

const std::vector<std::string> usualQueries{"good", "Good  MORNING!", "goo", "morning good goodness"};

void addHandMade(Corpus& corpus)
{
    const ModelContent good = smallModel();
    corpus.add("good", good.toFile(), usualQueries);
    corpus.add("good-top-0", good.toFile(), usualQueries, 0);
    corpus.add("good-top-1", good.toFile(), usualQueries, 1);
    corpus.add("good-top-negative", good.toFile(), usualQueries, -1);
    corpus.add("good-unasked", good.toFile(), {});
    corpus.add("good-asked-bytes", good.toFile(), {"caf\xC3\xA9 good", "\xFF", "?!", std::string("go\0od", 5)});
    for (unsigned absent = 1; absent < 8; ++absent) {
        ModelContent model = good;
        std::string name = "without";
        if (absent & 1U) {
            model.rows.reset();
            name += "-rows";
        }
        if (absent & 2U) {
            model.comics.reset();
            name += "-comics";
        }
        if (absent & 4U) {
            model.keys.reset();
            name += "-keys";
        }
        corpus.add(name, model.toFile(), usualQueries);
    }
    corpus.add("nothing", ModelContent().toFile(), usualQueries);
    corpus.add("no-file", {}, usualQueries);
    corpus.add("zeros", Bytes(24), usualQueries);

    ModelContent model = good;
    model.keys->front().word.reset();
    corpus.add("key-without-word", model.toFile(), usualQueries);
    model = good;
    model.keys->front().count = 1000;
    corpus.add("slice-behind-rows", model.toFile(), usualQueries);
    model = good;
    model.keys->front().start = -1;
    corpus.add("slice-before-rows", model.toFile(), usualQueries);
    model = good;
    model.keys->push_back(model.keys->front());
    corpus.add("key-twice-and-unsorted", model.toFile(), usualQueries);
    corpus.add("key-twice", model.sortKeys().toFile(), usualQueries);
    model = good;
    (*model.keys)[0].word = "";
    (*model.keys)[1].word = "good\xFF";
    corpus.add("odd-words", model.toFile(), usualQueries);
    model = good;
    model.keys->front().word = std::string("goo\0d", 5);
    corpus.add("zero-in-word", model.toFile(), usualQueries);
    Bytes file = good.toFile();
    file.resize(file.size() - 8);
    corpus.add("cut-off", file, usualQueries);
}

void addOddNumbers(Corpus& corpus)
{
    using Limits = std::numeric_limits<float>;
    const std::array odd{Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), 0.0F};
    for (std::size_t which = 0; which < odd.size(); ++which) {
        ModelContent model = smallModel();
        model.rows->front().prob = odd[which];
        (*model.keys)[1].wordPrior = odd[which];
        (*model.keys)[1].endWordScore = odd[which];
        corpus.add("odd-number-" + std::to_string(which), model.toFile(), usualQueries);
    }
}

void addGenerated(Corpus& corpus)
{
    // Few of each, so that a model has about a kilobyte.
    const ModelShape small{.comics = 8, .words = 4, .keys = 10, .rowsPerKey = 4};
    std::vector<ModelShape> shapes(10, small);
    shapes[1].distinctProbs = 1;
    shapes[2].repeatedRows = 0.3;
    shapes[3].unlistedComics = 0.3;
    shapes[4].repeatedComics = 0.3;
    shapes[5].oddProbs = 0.3;
    shapes[6].oddSlices = 0.3;
    shapes[7].sorted = false;
    shapes[8].greatestProb = 1e30F;
    shapes[9].comics = 40;
    Random random(1);
    for (std::size_t shape = 0; shape < shapes.size(); ++shape) {
        for (const std::string copy : {"a", "b"}) {
            const ModelContent model = generateModel(random, shapes[shape]);
            std::vector<std::string> queries;
            for (const std::size_t words : {1U, 3U, 5U}) {
                queries.push_back(generateQuery(random, model, words));
            }
            corpus.add("generated-" + std::to_string(shape) + copy, model.toFile(), queries);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: make_model_corpus FOLDER\n", stderr);
        return 2;
    }
    try {
        Corpus corpus(argv[1]);
        addHandMade(corpus);
        addOddNumbers(corpus);
        addGenerated(corpus);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_model_corpus: %s\n", error.what());
        return 1;
    }
}
