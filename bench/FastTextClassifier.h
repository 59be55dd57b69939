#pragma once

#include "support/ModelContent.h"

#include <memory>
#include <string>
#include <vector>

namespace kovalin::bench {

/// fastText's supervised classifier with a label for each comic of a model, trained on one line a comic: enough to be asked,
/// since the time of a prediction doesn't depend on how well it was trained.
class FastTextClassifier final {
public:
    enum class Loss { Softmax, HierarchicalSoftmax };

    FastTextClassifier(const vole::learned_search::test::ModelContent& model, Loss loss);
    ~FastTextClassifier();
    FastTextClassifier(const FastTextClassifier&) = delete;
    FastTextClassifier& operator=(const FastTextClassifier&) = delete;

    /// The labels of the best comics; returns how many there are.
    [[nodiscard]] std::size_t predict(const std::string& text, int count) const;

private:
    class Classifier;
    std::unique_ptr<Classifier> _classifier;
};

} // namespace kovalin::bench
