#pragma once

#include "learned_search/ModelFileBuffer.h"

#include <cstddef>
#include <optional>
#include <string>

namespace vole::learned_search {

class ModelFileBufferImpl final : public ModelFileBuffer {
public:
    explicit ModelFileBufferImpl(const std::optional<std::string>& path);
    ~ModelFileBufferImpl() override;
    ModelFileBufferImpl(const ModelFileBufferImpl&) = delete;
    ModelFileBufferImpl& operator=(const ModelFileBufferImpl&) = delete;

    [[nodiscard]] std::int64_t getAddress() const override;
    [[nodiscard]] std::int64_t getSize() const override;
    [[nodiscard]] bool stateIsValid() const override;
    void dispose() override;

private:
    struct Mapping {
        void* address;
        std::size_t size;
    };

    void setStateToFailed();

    std::optional<Mapping> _mapping;
};

} // namespace vole::learned_search
