#include "kovalin-backend/GraphQLRequest.h"

#include <QtCore/QJsonDocument>

#include <array>

namespace kovalin::backend {

namespace {

struct Document {
    GraphQLRequest::Operation operation;
    const char* name;
    QStringView text;
};

constexpr std::array<Document, 3> documents{
    {{GraphQLRequest::Operation::Avatar, "avatar", u"{me{kovalin{avatar}}}"},
     {GraphQLRequest::Operation::Packs, "packs",
      u"query ($page: String!, $time: String, $locale: String)"
      "{me{kovalin{packs(page: $page, time: $time, locale: $locale)}}}"},
     {GraphQLRequest::Operation::Users, "users",
      u"query ($externalIds: [String!]!){users(externalIds: $externalIds) {externalId, kovalin{id}}}"}}};

const Document* documentOf(const QString& query)
{
    for (const Document& document : documents) {
        if (document.text == query) {
            return &document;
        }
    }
    return nullptr;
}

} // namespace

std::optional<GraphQLRequest::Operation> GraphQLRequest::operation() const
{
    const Document* const document = documentOf(query);
    return document ? std::optional(document->operation) : std::nullopt;
}

std::optional<GraphQLRequest> GraphQLRequest::fromBody(const QByteArray& body)
{
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    const QJsonValue query = object.value(u"query");
    const QJsonValue variables = object.value(u"variables");
    if (!query.isString() || !(variables.isObject() || variables.isNull() || variables.isUndefined())) {
        return std::nullopt;
    }
    return GraphQLRequest{query.toString(), variables.toObject()};
}

QByteArray operationName(const Request& request)
{
    if (request.path != "/api/graphql") {
        return {};
    }
    const auto read = GraphQLRequest::fromBody(request.body);
    const Document* const document = read ? documentOf(read->query) : nullptr;
    return document ? QByteArray(document->name) : QByteArray();
}

} // namespace kovalin::backend
