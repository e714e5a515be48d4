#include "host/host_translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include "framework/location_helper.h"

namespace {
const char* const kInstalledName = "vantor_editor";
}  // namespace

void InstallEditorTranslations(QCoreApplication& application) {
    const QString language = QString::fromStdWString(CLanguageUtil::GetVantorLang());
    // Installed once per application, whichever path comes first. English has one too, for the
    // plurals of texts that count.
    if (application.findChild<QTranslator*>(kInstalledName)) return;
    auto* own = new QTranslator(&application);
    own->setObjectName(kInstalledName);
    if (own->load("vantor_editor_" + language,
                  QString::fromStdWString(CLocationHelper::GetLocalizedResPath())))
        application.installTranslator(own);
    auto* qt = new QTranslator(&application);
    if (qt->load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application.installTranslator(qt);
}
