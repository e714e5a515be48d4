#pragma once

class QCoreApplication;

// Installs the host's texts (vantor_editor_<lang>.qm in the language's resource folder) and Qt's
// own (standard buttons, file chooser) in the user's language, chosen as the module chooses its
// resources; English needs nothing. Every host path that shows a window calls it, so that a
// rule's dialog reads the same from the editor and from configure.
void InstallEditorTranslations(QCoreApplication& application);
