#include "picker/views/KeyName.h"

#include <QtGui/QKeySequence>

QString nameOfKey(Qt::Key key)
{
    return QKeySequence(key).toString(QKeySequence::NativeText);
}
