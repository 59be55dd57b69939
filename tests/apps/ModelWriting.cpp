#include "apps/ModelWriting.h"

#include "support/GeneratedModels.h"
#include "support/PlainClassifier.h"

namespace kovalin::test {

using namespace vole::learned_search;
using namespace vole::learned_search::test;

QByteArray modelBytes(const ModelContent& model)
{
    const Bytes bytes = model.toFile();
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QString writeModel(Files& files, const ModelContent& model)
{
    return files.write(QStringLiteral("model.bin"), modelBytes(model));
}

ModelContent smallModel()
{
    ModelContent model;
    model.list({7, 9, 3});
    model.add("good", {{7, 0.5F}, {9, 0.25F}}, 0.25F, 1);
    model.add("goodness", {{3, 0.5F}}, 0.75F, 0);
    model.add("good|morning", {{9, 0.5F}, {3, 0.25F}, {7, 0.125F}}, 0.5F, 1);
    model.add("tie", {{3, 0.5F}, {9, 0.5F}, {7, 0.5F}}, 0.125F, -0.5F);
    return model;
}

std::shared_ptr<ModelFileBuffer> exampleModelBuffer()
{
    return ModelFileBuffer::modelFileBufferInstanceWithPath(exampleModel().toStdString());
}

std::vector<std::string> exampleQueries()
{
    const PlainClassifier plain(exampleModelBuffer());
    ModelContent known; // its keys are all that queries are made of
    for (char first = 'a'; first <= 'z'; ++first) {
        for (const auto& [key, popularity] : plain.completions({first})) {
            known.add(key, {}, popularity);
        }
    }
    Random random(1);
    std::vector<std::string> queries{"", "?", "zzzz", "flag"};
    while (queries.size() < 400) {
        std::string query = generateQuery(random, known, 6);
        std::erase(query, '\n');
        queries.push_back(query);
    }
    return queries;
}

QByteArray asLines(const std::vector<std::string>& texts)
{
    QByteArray lines;
    for (const std::string& text : texts) {
        lines += QByteArray::fromStdString(text) + '\n';
    }
    return lines;
}

} // namespace kovalin::test
