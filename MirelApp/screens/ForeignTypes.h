#pragma once

#include "model/MirelAppModel.h"

#include <QQmlEngine>

namespace mirel {

// The model's types by their names in QML. The model itself knows nothing of QML.
struct MirelAppModelForeign
{
    Q_GADGET
    QML_FOREIGN(mirel::MirelAppModel)
    QML_NAMED_ELEMENT(MirelAppModel)
    QML_UNCREATABLE("There is one, handed to the window.")
};

struct BookmarkListModelForeign
{
    Q_GADGET
    QML_FOREIGN(mirel::BookmarkListModel)
    QML_NAMED_ELEMENT(BookmarkListModel)
    QML_UNCREATABLE("It belongs to the model.")
};

} // namespace mirel
