#include "learned_search/QueryWords.h"

namespace vole::learned_search {

namespace {

// The classes of the "C" locale, written out: the library's ones would follow a host that changes its locale.
bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

char toLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

QueryWords QueryWords::ofQuery(std::string_view query)
{
    QueryWords words;
    words._joined.reserve(query.size() + 1);
    words._starts.reserve(16); // more than people type
    const auto endWordIfAny = [&words] {
        if (words._joined.size() > words._starts.back()) {
            words._joined.push_back(kDelimiter);
            words._starts.push_back(words._joined.size());
        }
    };
    for (const char given : query) {
        const char c = toLower(given);
        if (isLetterOrDigit(c)) {
            words._joined.push_back(c);
        } else if (isSpace(c)) {
            endWordIfAny();
        }
    }
    endWordIfAny();
    words.dropLastDelimiter();
    return words;
}

QueryWords QueryWords::ofWords(const std::vector<std::string>& given)
{
    QueryWords words;
    for (const std::string& word : given) {
        words._joined.append(word).push_back(kDelimiter);
        words._starts.push_back(words._joined.size());
    }
    words.dropLastDelimiter();
    return words;
}

void QueryWords::dropLastDelimiter()
{
    if (!empty()) {
        _joined.pop_back();
    }
}

} // namespace vole::learned_search
