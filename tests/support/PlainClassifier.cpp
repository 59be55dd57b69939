#include "support/PlainClassifier.h"

#include "learned_search/search_model_generated.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <locale>
#include <sstream>
#include <string_view>
#include <unordered_map>

namespace vole::learned_search::test {

namespace {

constexpr float epsilon = 1e-12F;

std::string join(const std::vector<std::string>& words, std::size_t first, std::size_t last)
{
    std::string text;
    for (std::size_t word = first; word < last; ++word) {
        text += (word == first ? "" : "|") + words[word];
    }
    return text;
}

} // namespace

PlainClassifier::PlainClassifier(std::shared_ptr<ModelFileBuffer> buffer)
    : _buffer(std::move(buffer))
    , _model(GetSearchModel(reinterpret_cast<const void*>(_buffer->getAddress())))
{
}

std::vector<std::string> PlainClassifier::queryToPreprocessedWords(const std::string& query)
{
    std::istringstream stream(query);
    stream.imbue(std::locale::classic());
    std::vector<std::string> words;
    words.reserve(48);
    std::string token;
    while (stream >> token) {
        std::string word;
        for (const char c : token) {
            const int lower = std::tolower(c);
            if (std::isalnum(lower) || std::isspace(lower)) {
                word += static_cast<char>(lower);
            }
        }
        if (!word.empty()) {
            words.push_back(word);
        }
    }
    return words;
}

std::vector<std::string> PlainClassifier::generateWordNgrams(const std::vector<std::string>& words, int maxN) const
{
    if (maxN <= 1) {
        return words;
    }
    std::vector<std::string> accepted;
    const int count = static_cast<int>(words.size());
    for (int n = maxN; n >= 1; --n) {
        for (int start = 0; start <= count - n; ++start) {
            const auto candidate = join(words, static_cast<std::size_t>(start), static_cast<std::size_t>(start + n));
            const bool covered = std::any_of(accepted.begin(), accepted.end(), [&candidate](const std::string& longer) {
                return longer.find(candidate) != std::string::npos;
            });
            if (!covered && _model->entryInfoForWords()->LookupByKey(candidate.c_str())) {
                accepted.push_back(candidate);
            }
        }
    }
    return accepted;
}

std::vector<std::int32_t> PlainClassifier::predict(const std::string& query, std::int32_t topN) const
{
    const auto words = queryToPreprocessedWords(query);
    if (words.empty()) {
        return {};
    }
    const std::size_t count = _model->comicPriors()->size();
    std::vector<std::pair<std::int32_t, float>> scores(count, {0, 0.0F});
    for (const auto* prior : *_model->comicPriors()) {
        scores.emplace_back(prior->comicId(), epsilon);
    }
    int matched = 0;
    for (const std::string& ngram : generateWordNgrams(words, 5)) {
        const auto* entry = _model->entryInfoForWords()->LookupByKey(ngram.c_str());
        if (!entry || entry->entryStartIdx() < 0) {
            continue;
        }
        std::unordered_map<std::int32_t, float> probs;
        const std::int64_t end = std::int64_t{entry->entryStartIdx()} + entry->numEntries();
        for (std::int64_t row = entry->entryStartIdx(); row < end; ++row) {
            const auto* prob = _model->comicProbs()->Get(static_cast<flatbuffers::uoffset_t>(row));
            probs[prob->comicId()] = prob->prob();
        }
        const float weight = 10000.0F * static_cast<float>(std::count(ngram.begin(), ngram.end(), '|')) + 1.0F;
        for (auto& [comic, score] : scores) {
            const auto found = probs.find(comic);
            const float factor = weight * (found == probs.end() ? epsilon : found->second);
            score = score * factor;
        }
        ++matched;
    }
    const double bound =
        std::pow(static_cast<double>(epsilon), static_cast<double>(matched)) * static_cast<double>(0.001F);
    scores.erase(std::remove_if(scores.begin(), scores.end(),
                                [bound](const auto& scored) { return static_cast<double>(scored.second) <= bound; }),
                 scores.end());
    const auto k = std::min(static_cast<std::uint64_t>(static_cast<std::int64_t>(topN)),
                            static_cast<std::uint64_t>(scores.size()));
    std::partial_sort(scores.begin(), scores.begin() + static_cast<std::ptrdiff_t>(k), scores.end(),
                      [](const auto& a, const auto& b) { return a.second > b.second; });
    scores.resize(static_cast<std::size_t>(std::min(static_cast<std::int32_t>(scores.size()), topN)));
    std::vector<std::int32_t> comics;
    for (const auto& [comic, score] : scores) {
        comics.push_back(comic);
    }
    return comics;
}

std::vector<std::pair<std::string, float>> PlainClassifier::completions(const std::string& query) const
{
    const auto words = queryToPreprocessedWords(query);
    std::vector<std::pair<std::string, float>> list;
    if (words.empty()) {
        return list;
    }
    const std::string prefix = join(words, 0, words.size());
    for (const auto* entry : *_model->entryInfoForWords()) {
        if (entry->endWordScore() == 0.0F) {
            continue;
        }
        std::string_view word = entry->word()->string_view();
        word = word.substr(0, word.find('\0')); // as strlen has it, which GCC takes for a read past the string's length
        if (word.substr(0, prefix.size()) == prefix) {
            list.emplace_back(word, entry->wordPrior());
        }
    }
    return list;
}

std::vector<std::string> PlainClassifier::getAutocompleteSuggestions(const std::string& query) const
{
    auto list = completions(query);
    std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    std::vector<std::string> texts;
    for (auto& [key, popularity] : list) {
        std::replace(key.begin(), key.end(), '|', ' ');
        texts.push_back(key);
    }
    return texts;
}

} // namespace vole::learned_search::test
