// The README's example of the native core, as a program of its own: tests/package builds it against the installed library.
// [example]
#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/ModelFileBuffer.h"

#include <cstdio>

using namespace vole::learned_search;

int main(int, char** argv)
{
    const auto buffer = ModelFileBuffer::modelFileBufferInstanceWithPath(argv[1]);
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
    const auto suggestions = classifier->getAutocompleteSuggestions("birthday c");
    std::printf("%zu comics, best suggestion %s\n", classifier->predict("birthday cake", 1000).size(),
                suggestions.empty() ? "none" : suggestions.front().c_str());
}
// [example]
