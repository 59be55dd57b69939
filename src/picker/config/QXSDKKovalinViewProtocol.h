#pragma once

#include "picker/config/QXSDKKovalinViewType.h"

/// What every full-size view of a picker offers. Main thread only.
class QXSDKKovalinViewProtocol {
public:
    virtual ~QXSDKKovalinViewProtocol();

    /// Which view it is; the same for all its life.
    [[nodiscard]] virtual QXSDKKovalinViewType type() const = 0;

    /// The type of `view`; 0, which no view has, for null: where no view is current, every comparison with a type fails.
    [[nodiscard]] static qint32 typeOf(const QXSDKKovalinViewProtocol* view);
};
