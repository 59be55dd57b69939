#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <cstdint>

namespace kovalin::test {

/// A search model that predicts the one comic for the query of a start. `otherKeys` make it larger.
[[nodiscard]] QByteArray modelFor(std::int32_t comic, int otherKeys = 0);

/// A content folder of a test's own, with versions of the search model.
class ServedModels final {
public:
    [[nodiscard]] QString folder() const { return _folder.path(); }

    /// Puts up a version, at once.
    void putUp(int version, const QByteArray& model) const;

    /// The version as it is served; empty without one.
    [[nodiscard]] QByteArray model(int version) const;

private:
    [[nodiscard]] QString path(int version) const;

    QTemporaryDir _folder;
};

} // namespace kovalin::test
