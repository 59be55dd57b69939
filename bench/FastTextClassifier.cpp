#include "FastTextClassifier.h"

#include <fasttext/fasttext.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace kovalin::bench {

namespace {

using vole::learned_search::test::Bytes;
using vole::learned_search::test::ModelContent;
using vole::learned_search::test::TemporaryFile;

/// A line for each comic: its label, and the words that have rows for it.
Bytes trainingLines(const ModelContent& model)
{
    std::map<std::int32_t, std::string> textOfComic;
    for (const std::int32_t comic : *model.comics) {
        textOfComic[comic];
    }
    for (const auto& key : *model.keys) {
        std::string words = *key.word;
        std::replace(words.begin(), words.end(), '|', ' ');
        for (std::int32_t row = key.start; row < key.start + key.count; ++row) {
            std::string& text = textOfComic[model.rows->at(static_cast<std::size_t>(row)).comic];
            if (text.size() < 100) {
                text.append(" ").append(words);
            }
        }
    }
    Bytes lines;
    for (const auto& [comic, text] : textOfComic) {
        const std::string line = "__label__" + std::to_string(comic) + text + '\n';
        lines.insert(lines.end(), line.begin(), line.end());
    }
    return lines;
}

} // namespace

class FastTextClassifier::Classifier final : public fasttext::FastText {};

FastTextClassifier::FastTextClassifier(const ModelContent& model, Loss loss)
    : _classifier(std::make_unique<Classifier>())
{
    const TemporaryFile file(trainingLines(model));
    fasttext::Args args;
    args.model = fasttext::model_name::sup;
    args.loss = loss == Loss::Softmax ? fasttext::loss_name::softmax : fasttext::loss_name::hs;
    args.input = file.path();
    args.epoch = 1;
    args.lr = 0.1;
    args.minCount = 1;
    args.minn = 0;
    args.maxn = 0;
    args.thread = 1;
    args.verbose = 0;
    _classifier->train(args);
}

FastTextClassifier::~FastTextClassifier() = default;

std::size_t FastTextClassifier::predict(const std::string& text, int count) const
{
    std::istringstream line(text + '\n');
    std::vector<std::pair<fasttext::real, std::string>> labels;
    _classifier->predictLine(line, labels, count, 0);
    return labels.size();
}

} // namespace kovalin::bench
