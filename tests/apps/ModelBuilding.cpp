#include "apps/ModelBuilding.h"

#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/ModelFileBuffer.h"
#include "learned_search/search_model_generated.h"

#include <QtCore/QFile>

#include <algorithm>
#include <iterator>

using namespace vole::learned_search;

namespace kovalin::test {

ProgramResult buildModel(const QByteArray& pairs, const QString& out, const QStringList& more)
{
    return runKovalin(QStringList{QStringLiteral("model"), QStringLiteral("build"), QStringLiteral("--pairs"),
                                  QStringLiteral("-"), QStringLiteral("--out"), out} +
                          more,
                      pairs);
}

std::shared_ptr<LearnedSearchClassifier> classifierOn(const QString& model)
{
    return LearnedSearchClassifier::learnedSearchClassifierWithBuffer(
        ModelFileBuffer::modelFileBufferInstanceWithPath(QFile::encodeName(model).toStdString()));
}

std::vector<std::string> BuiltModel::words() const
{
    std::vector<std::string> list;
    std::ranges::transform(keys, std::back_inserter(list), &Key::word);
    return list;
}

BuiltModel::Key BuiltModel::key(const std::string& word) const
{
    const auto found = std::ranges::find(keys, word, &Key::word);
    return found == keys.end() ? Key{} : *found;
}

std::vector<std::int32_t> BuiltModel::comicsOf(const std::string& word) const
{
    std::vector<std::int32_t> list;
    for (const auto& [comic, factor] : key(word).rows) {
        list.push_back(comic);
    }
    return list;
}

std::vector<std::int32_t> BuiltModel::comicIds() const
{
    std::vector<std::int32_t> list;
    for (const auto& [comic, prior] : comics) {
        list.push_back(comic);
    }
    return list;
}

BuiltModel readModel(const QString& path)
{
    const QByteArray content = contentOf(path);
    if (!classifierOn(path)->modelIsInitialized()) {
        return {};
    }
    const SearchModel& model = *GetSearchModel(content.constData());
    BuiltModel built;
    for (const auto* comic : *model.comicPriors()) {
        built.comics.emplace_back(comic->comicId(), comic->prior());
    }
    for (const auto* entry : *model.entryInfoForWords()) {
        auto& key = built.keys.emplace_back(BuiltModel::Key{
            entry->word()->str(), entry->entryStartIdx(), entry->wordPrior(), entry->endWordScore(), {}});
        for (std::int32_t i = 0; i < entry->numEntries(); ++i) {
            const auto* row = model.comicProbs()->Get(static_cast<flatbuffers::uoffset_t>(entry->entryStartIdx() + i));
            key.rows.emplace_back(row->comicId(), row->prob());
        }
    }
    return built;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace kovalin::test
