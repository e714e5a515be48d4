#include "dialogs/database/fastener_error_dlg.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "app/assembly_rules_app.h"
#include "controls/hyper_link.h"
#include "framework/ui/dialog_buttons.h"
#include "framework/ui/dialog_shape.h"
#include "framework/ui/ui_service.h"

namespace {
QString Q(const std::wstring& text) { return QString::fromStdWString(text); }
}  // namespace

CZEBFastenerErrorDlg::CZEBFastenerErrorDlg(const std::wstring& logPath, int isWarning, int isError,
                                           QWidget* parent)
    : QDialog(parent),
      m_link(new CHyperLink(this)),
      m_message(new QLabel(this)),
      m_hint(new QLabel(this)),
      m_logPath(logPath),
      m_isWarning(isWarning),
      m_isError(isError) {
    // The link opens the log through the UI service.
    EnsureZebUiService();
    setWindowTitle(QStringLiteral("Vantor"));
    // Its height follows the message it shows, so no size is kept; Tab still follows the layout.
    new CZebDialogShape(this, 0);

    SetZebControlId(m_message, kMessageId);
    SetZebControlId(m_link, kLinkId);
    SetZebControlId(m_hint, kHintId);
    if (m_isError == 1)
        m_message->setText(Q(LoadLocalizedString(IDS_SHEET_ROWS_INVALID)));
    else if (m_isWarning == 1)
        m_message->setText(Q(LoadLocalizedString(IDS_SHEET_NAMES_REPEATED)));
    m_message->setWordWrap(true);
    m_link->SetLinkText(LoadLocalizedString(IDS_OPEN_LOG_LINK));
    m_link->SetLinkColour(QColor(0, 0, 255));
    m_link->SetURL(m_logPath);
    m_link->setAutoFillBackground(false);
    m_link->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_hint->setText(Q(LoadLocalizedString(IDS_OPEN_LOG_HINT)));
    m_hint->setWordWrap(true);

    const ZebDialogButtons buttons = MakeZebDialogButtons(this);
    if (m_isError == 1) {
        // A blocking error has nothing to go on with: one button that closes.
        buttons.ok->setText(Q(LoadLocalizedString(IDS_CLOSE)));
        buttons.cancel->hide();
    }

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_message);
    layout->addSpacing(6);
    layout->addWidget(m_link);
    layout->addWidget(m_hint);
    // Height that wrapped texts leave over goes below them, not between them.
    layout->addStretch(1);
    layout->addSpacing(6);
    layout->addWidget(buttons.box);
    // Long messages wrap at a fixed width; the height is what the wrapped texts need there
    // (a wrapped label's own size hint guesses a narrower width and leaves a gap).
    constexpr int kWidth = 460;
    resize(kWidth, std::max(heightForWidth(kWidth), minimumSizeHint().height()));
}

int CZEBFastenerErrorDlg::DoModal() { return exec(); }

void CZEBFastenerErrorDlg::accept() { done(kIdOk); }

void CZEBFastenerErrorDlg::reject() { done(kIdCancel); }
