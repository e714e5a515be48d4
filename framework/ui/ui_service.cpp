#include "framework/ui/ui_service.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>

namespace {
IZebUiService* g_service = nullptr;

// Hands the core's message boxes to whatever service is current.
class CoreMessageSink : public IZebMessageSink {
public:
    int ShowMessage(const std::wstring& caption, const std::wstring& text, ZebMsgIcon icon,
                    ZebMsgButtons buttons) override {
        IZebUiService* service = GetZebUiService();
        return service
                   ? service->MessageBox(QApplication::activeWindow(), caption, text, icon, buttons)
                   : ZebFirstButtonAnswer(buttons);
    }
};
CoreMessageSink g_sink;

QString ToQ(const std::wstring& text) { return QString::fromStdWString(text); }
}  // namespace

IZebUiService* GetZebUiService() {
    EnsureZebUiService();
    return g_service;
}

IZebUiService* SetZebUiService(IZebUiService* service) {
    IZebUiService* previous = g_service;
    g_service = service;
    if (service) {
        SetZebMessageSink(&g_sink);
    } else if (GetZebMessageSink() == &g_sink) {
        SetZebMessageSink(nullptr);
    }
    return previous;
}

void EnsureZebUiService() {
    static CZebQtUiService qtService;
    if (!g_service && qobject_cast<QApplication*>(QCoreApplication::instance()))
        SetZebUiService(&qtService);
}

int ZebUiMessage(QWidget* parent, const std::wstring& text, ZebMsgIcon icon,
                 ZebMsgButtons buttons) {
    IZebUiService* service = GetZebUiService();
    if (!service) return ZebFirstButtonAnswer(buttons);
    return service->MessageBox(parent, L"Vantor", text, icon, buttons);
}

std::wstring ZebHelpUrl(const std::wstring& helpFile, const std::wstring& topic) {
    QUrl url = QUrl::fromLocalFile(QFileInfo(ToQ(helpFile)).absoluteFilePath());
    if (!topic.empty()) url.setFragment(ToQ(topic), QUrl::DecodedMode);
    return url.toString(QUrl::FullyEncoded).toStdWString();
}

bool ZebOpenHelp(QWidget* parent, const std::wstring& helpFile, const std::wstring& topic) {
    // The application's translations carry these texts in the user's language.
    if (helpFile.empty() || !QFileInfo(ToQ(helpFile)).isFile()) {
        const QString text =
            helpFile.empty()
                ? QCoreApplication::translate("ZebOpenHelp", "The help file is missing.")
                : QCoreApplication::translate("ZebOpenHelp", "The help file %1 is missing.")
                      .arg(ToQ(helpFile));
        ZebUiMessage(parent, text.toStdWString(), ZebMsgIcon::Warning);
        return false;
    }
    IZebUiService* service = GetZebUiService();
    if (!service) return false;
    if (service->ShellOpen(ZebHelpUrl(helpFile, topic))) return true;
    ZebUiMessage(
        parent,
        QCoreApplication::translate(
            "ZebOpenHelp", "The help file %1 could not be opened. Open it in a web browser.")
            .arg(ToQ(helpFile))
            .toStdWString(),
        ZebMsgIcon::Warning);
    return false;
}

QStringList ZebNameFiltersFromFilter(const std::wstring& filter) {
    const QStringList parts = ToQ(filter).split(QLatin1Char('|'));
    QStringList result;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString description = parts[i].trimmed();
        QStringList patterns;
        for (const QString& pattern : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            if (!pattern.trimmed().isEmpty()) patterns << pattern.trimmed();
        }
        if (description.isEmpty() && patterns.isEmpty()) continue;
        // Qt reads the patterns from the last parentheses of each entry.
        result << QStringLiteral("%1 (%2)").arg(description, patterns.join(QLatin1Char(' ')));
    }
    return result;
}

int CZebQtUiService::MessageBox(QWidget* parent, const std::wstring& caption,
                                const std::wstring& text, ZebMsgIcon icon, ZebMsgButtons buttons) {
    QMessageBox box(parent);
    box.setWindowTitle(ToQ(caption));
    box.setText(ToQ(text));
    switch (icon) {
        case ZebMsgIcon::Information:
            box.setIcon(QMessageBox::Information);
            break;
        case ZebMsgIcon::Warning:
            box.setIcon(QMessageBox::Warning);
            break;
        case ZebMsgIcon::Error:
            box.setIcon(QMessageBox::Critical);
            break;
        case ZebMsgIcon::Question:
            box.setIcon(QMessageBox::Question);
            break;
        case ZebMsgIcon::Plain:
            box.setIcon(QMessageBox::NoIcon);
            break;
    }
    switch (buttons) {
        case ZebMsgButtons::Ok:
            box.setStandardButtons(QMessageBox::Ok);
            break;
        case ZebMsgButtons::OkCancel:
            box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
            break;
        case ZebMsgButtons::YesNo:
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            break;
        case ZebMsgButtons::SaveDiscardCancel:
            box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
            box.setDefaultButton(QMessageBox::Save);
            break;
    }
    switch (box.exec()) {
        case QMessageBox::Cancel:
            return ZebIdCancel;
        case QMessageBox::Yes:
        case QMessageBox::Save:
            return ZebIdYes;
        case QMessageBox::No:
        case QMessageBox::Discard:
            return ZebIdNo;
        default:
            // Closed without a button: the answer that changes nothing.
            if (buttons == ZebMsgButtons::SaveDiscardCancel) return ZebIdCancel;
            return buttons == ZebMsgButtons::YesNo ? ZebIdNo : ZebIdOk;
    }
}

bool CZebQtUiService::OpenFiles(QWidget* parent, const ZebOpenFileRequest& request,
                                std::vector<std::wstring>& paths) {
    QFileDialog dialog(parent);
    dialog.setAcceptMode(request.forSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.multiSelect                           ? QFileDialog::ExistingFiles
                       : request.fileMustExist && !request.forSaving ? QFileDialog::ExistingFile
                                                                     : QFileDialog::AnyFile);
    dialog.setNameFilters(ZebNameFiltersFromFilter(request.filter));
    dialog.setDefaultSuffix(ToQ(request.defaultExtension));
    if (dialog.exec() != QDialog::Accepted) return false;
    paths.clear();
    for (const QString& file : dialog.selectedFiles()) paths.push_back(file.toStdWString());
    return !paths.empty();
}

bool CZebQtUiService::ShellOpen(const std::wstring& target) {
    const QString text = ToQ(target);
    const QUrl url = text.contains(QLatin1String("://")) ? QUrl(text) : QUrl::fromLocalFile(text);
    return QDesktopServices::openUrl(url);
}
