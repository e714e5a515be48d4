#include "host/host_translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include "framework/location_helper.h"

namespace {
// The translators this installs carry this name and their language.
constexpr const char* kInstalledPrefix = "vantor_editor_translations_";
}  // namespace

void InstallEditorTranslations(QCoreApplication& application) {
    const QString language = QString::fromStdWString(CLanguageUtil::GetVantorLang());
    const QString name = kInstalledPrefix + language;
    // Installed once per application and language, whichever path comes first; English has one
    // too, for the plurals of texts that count. Those of another language give way.
    if (application.findChild<QTranslator*>(name, Qt::FindDirectChildrenOnly)) return;
    for (QTranslator* earlier : application.findChildren<QTranslator*>(Qt::FindDirectChildrenOnly))
        if (earlier->objectName().startsWith(kInstalledPrefix)) {
            QCoreApplication::removeTranslator(earlier);
            delete earlier;
        }
    auto* own = new QTranslator(&application);
    own->setObjectName(name);
    if (own->load("vantor_editor_" + language,
                  QString::fromStdWString(CLocationHelper::GetLocalizedResPath())))
        application.installTranslator(own);
    auto* qt = new QTranslator(&application);
    qt->setObjectName(name);
    if (qt->load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application.installTranslator(qt);
}
