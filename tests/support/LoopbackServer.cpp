#include "support/LoopbackServer.h"

#include "platform/dispatch/ThreadQueue.h"

#include <QtCore/QPointer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QSslSocket>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>

namespace kovalin::test {

namespace {

ReceivedRequest parseHead(const QByteArray& head)
{
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> first = lines.takeFirst().trimmed().split(' ');
    ReceivedRequest request{.method = first.value(0), .target = first.value(1)};
    for (const QByteArray& line : lines) {
        if (const qsizetype colon = line.indexOf(':'); colon > 0) {
            request.headers.emplaceBack(line.first(colon), line.sliced(colon + 1).trimmed());
        }
    }
    return request;
}

QByteArray pathOf(const ReceivedRequest& request)
{
    return request.target.split('?').first();
}

// Runs `job` on `queue` and returns once it has run.
void runOn(platform::ThreadQueue& queue, const std::function<void()>& job)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool isDone = false;
    queue.async([&] {
        job();
        const std::lock_guard lock(mutex);
        isDone = true;
        changed.notify_all();
    });
    std::unique_lock lock(mutex);
    changed.wait(lock, [&isDone] { return isDone; });
}

} // namespace

/// What the tests and the server's thread share.
class LoopbackServer::Script final {
public:
    void set(const QByteArray& path, ScriptedAnswer answer)
    {
        const std::lock_guard lock(_mutex);
        _answers.insert_or_assign(path, std::move(answer));
    }

    ScriptedAnswer received(ReceivedRequest request)
    {
        const std::lock_guard lock(_mutex);
        const QByteArray path = pathOf(request);
        _requests.push_back(std::move(request));
        _changed.notify_all();
        const auto found = _answers.find(path);
        return found != _answers.end() ? found->second : ScriptedAnswer::withStatus(404);
    }

    void release(const QByteArray& path)
    {
        const std::lock_guard lock(_mutex);
        _released.insert(path);
    }

    bool isReleased(const QByteArray& path) const
    {
        const std::lock_guard lock(_mutex);
        return _released.contains(path);
    }

    void countHeld()
    {
        const std::lock_guard lock(_mutex);
        ++_held;
        _changed.notify_all();
    }

    std::vector<ReceivedRequest> requests() const
    {
        const std::lock_guard lock(_mutex);
        return _requests;
    }

    void waitForRequests(std::size_t count) const
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this, count] { return _requests.size() >= count; });
    }

    void waitForHeld(std::size_t count) const
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this, count] { return _held >= count; });
    }

private:
    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    std::map<QByteArray, ScriptedAnswer> _answers; // guarded by _mutex
    std::set<QByteArray> _released;                // guarded by _mutex
    std::vector<ReceivedRequest> _requests;        // guarded by _mutex
    std::size_t _held = 0;                         // guarded by _mutex
};

/// One connection, on the server's thread: one request after the other.
class LoopbackServer::Connection final : public QObject {
public:
    Connection(std::shared_ptr<Script> script, QTcpSocket* socket, std::size_t number)
        : _script(std::move(script))
        , _socket(socket)
        , _number(number)
    {
        socket->setParent(this);
        connect(socket, &QTcpSocket::readyRead, this, [this] {
            _received += _socket->readAll();
            _takeRequest();
        });
        connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    }

    void proceed()
    {
        using Hold = ScriptedAnswer::Hold;
        const qsizetype half = _answer.body.size() / 2;
        while (_stage != Stage::Idle) {
            switch (_stage) {
            case Stage::Head:
                if (_isHeldAt(Hold::BeforeHead)) {
                    return;
                }
                _socket->write(_answer.raw ? *_answer.raw : _answer.head());
                _stage = _answer.raw ? Stage::End : Stage::FirstHalf;
                break;
            case Stage::FirstHalf:
                if (_isHeldAt(Hold::BeforeBody)) {
                    return;
                }
                _socket->write(_answer.body.first(half));
                _stage = Stage::SecondHalf;
                break;
            case Stage::SecondHalf:
                if (_isHeldAt(Hold::MidBody)) {
                    return;
                }
                _socket->write(_answer.body.sliced(half));
                _stage = Stage::End;
                break;
            case Stage::End:
                _finish();
                return;
            case Stage::Idle:
                return;
            }
        }
    }

private:
    enum class Stage { Idle, Head, FirstHalf, SecondHalf, End };

    void _takeRequest()
    {
        const qsizetype end = _received.indexOf("\r\n\r\n");
        if (_stage != Stage::Idle || end < 0) {
            return;
        }
        ReceivedRequest request = parseHead(_received.first(end));
        const qsizetype size = request.header("Content-Length").value_or("0").toLongLong();
        if (_received.size() < end + 4 + size) {
            return;
        }
        request.body = _received.sliced(end + 4, size);
        request.connection = _number;
        _received.remove(0, end + 4 + size);
        _path = pathOf(request);
        _answer = _script->received(std::move(request));
        if (_answer.sentBytes) {
            const QByteArray whole = _answer.body;
            _answer.headers.emplaceBack("Content-Length", QByteArray::number(whole.size()));
            _answer.body = whole.first(*_answer.sentBytes);
        }
        _stage = Stage::Head;
        _isCounted = false;
        proceed();
    }

    bool _isHeldAt(ScriptedAnswer::Hold hold)
    {
        if (_answer.hold != hold || _script->isReleased(_path)) {
            return false;
        }
        _socket->flush();
        if (!std::exchange(_isCounted, true)) {
            _script->countHeld();
        }
        return true;
    }

    void _finish()
    {
        switch (_answer.end) {
        case ScriptedAnswer::End::KeepAlive:
            _stage = Stage::Idle;
            _takeRequest();
            return;
        case ScriptedAnswer::End::Close:
            _stage = Stage::Idle;
            _socket->disconnectFromHost();
            return;
        case ScriptedAnswer::End::Silence:
            return;
        }
    }

    const std::shared_ptr<Script> _script;
    QTcpSocket* const _socket;
    const std::size_t _number;
    QByteArray _received;
    QByteArray _path;
    ScriptedAnswer _answer;
    Stage _stage = Stage::Idle;
    bool _isCounted = false;
};

/// The listening end, on the server's thread. Owns the connections.
class LoopbackServer::Listener final : public QTcpServer {
public:
    Listener(std::shared_ptr<Script> script, std::optional<QSslConfiguration> tls)
        : _script(std::move(script))
        , _tls(std::move(tls))
    {
    }

    void proceed()
    {
        for (const QPointer<Connection>& connection : _connections) {
            if (connection) {
                connection->proceed();
            }
        }
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        QTcpSocket* socket = nullptr;
        if (_tls) {
            auto* const secure = new QSslSocket;
            secure->setSslConfiguration(*_tls);
            secure->setSocketDescriptor(descriptor);
            secure->startServerEncryption();
            socket = secure;
        } else {
            socket = new QTcpSocket;
            socket->setSocketDescriptor(descriptor);
        }
        _connections.push_back(new Connection(_script, socket, _connections.size()));
        _connections.back()->setParent(this);
    }

private:
    const std::shared_ptr<Script> _script;
    const std::optional<QSslConfiguration> _tls;
    std::vector<QPointer<Connection>> _connections; // all there ever were
};

LoopbackServer::LoopbackServer(std::optional<QSslConfiguration> tls)
    : _script(std::make_shared<Script>())
    , _listener(std::make_shared<std::unique_ptr<Listener>>())
    , _queue(std::make_unique<platform::ThreadQueue>(QStringLiteral("LoopbackServer"),
                                                     platform::ThreadQueueEvents{.applicationWillEnd = {},
                                                                                 .threadWillEnd =
                                                                                     [listener = _listener] {
                                                                                         listener->reset();
                                                                                     }}))
    , _isSecure(tls.has_value())
{
    runOn(*_queue, [this, tls = std::move(tls)] {
        *_listener = std::make_unique<Listener>(_script, tls);
        if ((*_listener)->listen(QHostAddress::LocalHost)) {
            _port = (*_listener)->serverPort();
        }
    });
    if (_port == 0) {
        throw std::runtime_error("No port to listen at");
    }
}

LoopbackServer::~LoopbackServer() = default;

QUrl LoopbackServer::url(const QString& path) const
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3")
                    .arg(_isSecure ? QStringLiteral("https") : QStringLiteral("http"), QString::number(_port), path));
}

void LoopbackServer::script(const QByteArray& path, ScriptedAnswer answer)
{
    _script->set(path, std::move(answer));
}

void LoopbackServer::release(const QByteArray& path)
{
    _script->release(path);
    _queue->async([listener = _listener] {
        if (*listener) {
            (*listener)->proceed();
        }
    });
}

std::vector<ReceivedRequest> LoopbackServer::requests() const
{
    return _script->requests();
}

void LoopbackServer::waitForRequests(std::size_t count) const
{
    _script->waitForRequests(count);
}

void LoopbackServer::waitForHeld(std::size_t count) const
{
    _script->waitForHeld(count);
}

void LoopbackServer::stopListening()
{
    runOn(*_queue, [this] { (*_listener)->close(); });
}

} // namespace kovalin::test
