#pragma once

/// Whether the learned engine takes part in searches. Any thread.
class QXSDKKovalinLearnedSearchConfig {
public:
    virtual ~QXSDKKovalinLearnedSearchConfig();

    /// Decided once for the process, by the dynamic configuration "kovalinLearnedSearch" as it is known at the first call: false
    /// without it, true with it unless its "enabled" is false.
    [[nodiscard]] virtual bool isLearnedSearchEnabled() const;
};
