#include "host/editor/unit_names.h"

#include <QCoreApplication>
#include <iterator>

namespace {
// The menu's names of the unit codes, by code.
const char* const kUnitNames[] = {
    QT_TRANSLATE_NOOP("Units", "Millimetres (mm)"),
    QT_TRANSLATE_NOOP("Units", "Centimetres (cm)"),
    QT_TRANSLATE_NOOP("Units", "Metres (m)"),
    QT_TRANSLATE_NOOP("Units", "Inches (in)"),
    QT_TRANSLATE_NOOP("Units", "Feet (ft)"),
    QT_TRANSLATE_NOOP("Units", "Nanometres (nm)"),
    QT_TRANSLATE_NOOP("Units", "Micrometres (µm)"),
    QT_TRANSLATE_NOOP("Units", "Decimetres (dm)"),
    QT_TRANSLATE_NOOP("Units", "Yards (yd)"),
    QT_TRANSLATE_NOOP("Units", "Thousandths of an inch (mil)"),
    QT_TRANSLATE_NOOP("Units", "Kilometres (km)"),
};

}  // namespace

QString UnitText(long code) {
    if (code < 0 || code >= static_cast<long>(std::size(kUnitNames))) return QString::number(code);
    return QCoreApplication::translate("Units", kUnitNames[code]);
}
