#include "kovalin-backend/RuledAnswers.h"

#include "kovalin-backend/GraphQLRequest.h"

#include <QtCore/QTimer>
#include <QtNetwork/QTcpSocket>

#include <chrono>
#include <functional>
#include <utility>

namespace kovalin::backend {

namespace {

constexpr int garbageBytes = 64;

Answer statusAnswer(const AnswerRule& rule)
{
    Answer answer = Answer::plain(rule.status);
    if (rule.retryAfterSeconds) {
        answer.headers.emplaceBack(QByteArrayLiteral("Retry-After"), QByteArray::number(*rule.retryAfterSeconds));
    }
    return answer;
}

/// Calls `job` after `delay`, unless the connection goes before.
void callLater(std::chrono::milliseconds delay, QTcpSocket* connection, const std::function<void()>& job)
{
    auto* const timer = new QTimer(connection);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, job] {
        timer->deleteLater();
        job();
    });
    timer->start(delay);
}

/// No text in UTF-8, and as a model a root far behind its end.
Answer garbage()
{
    return Answer::bytes(QByteArray(garbageBytes, '\xFF'));
}

} // namespace

RuledAnswers::RuledAnswers(const Endpoints& endpoints, std::shared_ptr<const AnswerRules> rules)
    : _endpoints(endpoints)
    , _rules(std::move(rules))
{
}

AnswerRule RuledAnswers::ruleFor(const Request& request) const
{
    return _rules->ruleFor(request.path, operationName(request));
}

void RuledAnswers::answer(const Exchange& exchange)
{
    answer(exchange, ruleFor(exchange.request()));
}

void RuledAnswers::answerAsUsual(const Exchange& exchange) const
{
    _endpoints.answer(exchange.request(), [exchange](const Answer& answer) { exchange.send(answer); });
}

void RuledAnswers::rulesChanged()
{
    for (const Exchange& exchange : std::exchange(_unanswered, {})) {
        if (exchange.socket()) { // else what was asked for, a batch to be taken for instance, must not happen any more
            answer(exchange);
        }
    }
}

void RuledAnswers::_answerWith(const QByteArray& query, const Exchange& exchange) const
{
    Request request = exchange.request();
    request.query = request.query.isEmpty() ? query : QByteArray(query + '&' + request.query);
    _endpoints.answer(request, [exchange](const Answer& answer) { exchange.send(answer); });
}

void RuledAnswers::answer(const Exchange& exchange, const AnswerRule& rule)
{
    switch (rule.kind) {
    case AnswerRule::Kind::Usual:
        answerAsUsual(exchange);
        return;
    case AnswerRule::Kind::Status:
        exchange.send(statusAnswer(rule));
        return;
    case AnswerRule::Kind::Delay:
        if (QTcpSocket* socket = exchange.socket()) {
            callLater(rule.delay, socket, [this, exchange] { answerAsUsual(exchange); });
        }
        return;
    case AnswerRule::Kind::With:
        _answerWith(rule.query, exchange);
        return;
    case AnswerRule::Kind::Body:
        exchange.send(Answer::json(rule.body));
        return;
    case AnswerRule::Kind::Garbage:
        exchange.send(garbage());
        return;
    case AnswerRule::Kind::Cut:
        _endpoints.answer(exchange.request(), [exchange](const Answer& answer) { exchange.sendHalf(answer); });
        return;
    case AnswerRule::Kind::Nothing:
        if (exchange.socket()) {
            std::erase_if(_unanswered, [](const Exchange& each) { return !each.socket(); });
            _unanswered.push_back(exchange);
        }
        return;
    case AnswerRule::Kind::Refuse:
        exchange.close();
        return;
    }
}

} // namespace kovalin::backend
