#pragma once

#include "apps/KovalinProgram.h"
#include "support/ModelContent.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>
#include <string>
#include <vector>

namespace kovalin::test {

using vole::learned_search::test::ModelContent;

/// What a model file holds, right or wrong.
[[nodiscard]] QByteArray modelBytes(const ModelContent& model);

/// Writes a model file; returns its path.
QString writeModel(Files& files, const ModelContent& model);

/// A model with comics 7, 9 and 3 under a few words.
[[nodiscard]] ModelContent smallModel();

/// The model of the examples, in memory for as long as it is held.
[[nodiscard]] std::shared_ptr<vole::learned_search::ModelFileBuffer> exampleModelBuffer();

/// Several hundred texts of which the model of the examples knows much, little or nothing, always the same.
[[nodiscard]] std::vector<std::string> exampleQueries();

/// The texts one a line.
[[nodiscard]] QByteArray asLines(const std::vector<std::string>& texts);

} // namespace kovalin::test
