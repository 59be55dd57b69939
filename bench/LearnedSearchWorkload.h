#pragma once

#include "support/ModelContent.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kovalin::bench {

/// What a model of one size is like: words as frequent as in a language, so that few have many rows and most have few, and
/// n-grams of them with a handful of rows each.
struct ModelSize {
    std::size_t keys;
    std::size_t comics;
    std::size_t rows;
};

enum class SliceOrder { AnyOrder, BestFirst };
enum class Probs { AllDifferent, AsCounted }; // as counted: few values, so many ties

[[nodiscard]] vole::learned_search::test::ModelContent generateLargeModel(const ModelSize& size, SliceOrder order,
                                                                          Probs probs);

/// What people type: single words and runs of two to four, frequent ones more often.
[[nodiscard]] std::vector<std::string> typedTexts(const vole::learned_search::test::ModelContent& model,
                                                  std::size_t count);

/// Single words of the dictionary, frequent ones more often.
[[nodiscard]] std::vector<std::string> typedWords(const vole::learned_search::test::ModelContent& model,
                                                  std::size_t count);

/// The beginnings of such texts, from the second letter on.
[[nodiscard]] std::vector<std::string> typedBeginnings(const vole::learned_search::test::ModelContent& model,
                                                       std::size_t count);

} // namespace kovalin::bench
