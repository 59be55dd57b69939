#pragma once

#include "kovalin-backend/AnswerRules.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/Exchange.h"

#include <memory>
#include <vector>

namespace kovalin::backend {

/// Answers requests as the endpoints do, unless a rule says otherwise. Nothing waits here: a late answer is a timer,
/// a missing one an entry in a list. The server's thread only; to be destroyed after the connections.
class RuledAnswers final {
public:
    RuledAnswers(const Endpoints& endpoints, std::shared_ptr<const AnswerRules> rules);
    Q_DISABLE_COPY_MOVE(RuledAnswers)

    /// Answers by the rule that holds now.
    void answer(const Exchange& exchange);

    /// What is said of a request by now, and an answer by that, whatever is said meanwhile.
    [[nodiscard]] AnswerRule ruleFor(const Request& request) const;
    void answer(const Exchange& exchange, const AnswerRule& rule);

    /// Answers as if there were no rules.
    void answerAsUsual(const Exchange& exchange) const;

    /// To be called when rules have changed: answers what was left without an answer where another rule holds now.
    void rulesChanged();

private:
    void _answerWith(const QByteArray& query, const Exchange& exchange) const;

    const Endpoints& _endpoints;
    const std::shared_ptr<const AnswerRules> _rules;
    std::vector<Exchange> _unanswered; // by a rule, in order; some of them may be gone
};

} // namespace kovalin::backend
