#include "kovalin-backend/ControlEndpoints.h"

#include <utility>
#include <variant>

namespace kovalin::backend {

namespace {

constexpr int noContent = 204;
constexpr int badRequest = 400;

} // namespace

void addControlEndpoints(Endpoints& endpoints, std::function<void(const PathRule&)> setAnswer)
{
    endpoints.add(QByteArrayLiteral("POST"), QStringLiteral("/control/answers"),
                  [setAnswer = std::move(setAnswer)](const Request& request, const QList<QString>&) {
                      const auto read = PathRule::fromText(request.body);
                      if (const auto* fault = std::get_if<QString>(&read)) {
                          return Answer::text(badRequest, *fault);
                      }
                      setAnswer(std::get<PathRule>(read));
                      return Answer::empty(noContent);
                  });
}

} // namespace kovalin::backend
