#include "framework/ui/rule_dlg_base.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <algorithm>
#include <utility>

#include "framework/ui/dialog_buttons.h"
#include "framework/ui/dialog_shape.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/pre_translate_filter.h"
#include "framework/ui/ui_service.h"

CZEBRuleDlgBase::CZEBRuleDlgBase(unsigned templateId, long imageId,
                                 const std::wstring& helpFilePath, QWidget* parent)
    : QDialog(parent),
      m_templateId(templateId),
      m_imageId(imageId),
      m_helpFilePath(helpFilePath),
      m_picture(new PictureControl(this)),
      m_body(new QWidget(this)),
      m_preTranslate(new CZebPreTranslateFilter(this, [this](QObject* target, QEvent* event) {
          return PreTranslateMessage(target, event);
      })) {
    EnsureZebUiService();
    new CZebDialogShape(this, templateId);
    auto* top = new QHBoxLayout;
    top->addWidget(m_picture, 0, Qt::AlignTop);
    top->addWidget(m_body, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addWidget(MakeZebDialogButtons(this, [this] { OnHelp(); }).box);
}

// The children go after this, and their events must not reach a dialog that is gone.
CZEBRuleDlgBase::~CZEBRuleDlgBase() { m_preTranslate->SetEnabled(false); }

namespace {
int g_lastModalResult = 0;
}

int CZEBRuleDlgBase::DoModal() {
    g_lastModalResult = exec();
    return g_lastModalResult;
}

int CZEBRuleDlgBase::TakeLastModalResult() { return std::exchange(g_lastModalResult, 0); }

bool CZEBRuleDlgBase::OnInitDialog() {
    if (m_imageId > 0) m_picture->SetBitmapId(static_cast<unsigned>(m_imageId));
    return true;
}

// A dialog whose own picture control shows a bitmap pictures the rule already; the rule's image
// beside it would show the same thing twice.
void CZEBRuleDlgBase::ShowRuleImageUnlessPictured() {
    const QList<PictureControl*> own = m_body->findChildren<PictureControl*>();
    const bool pictured = std::any_of(own.begin(), own.end(), [](const PictureControl* picture) {
        return !picture->pixmap().isNull();
    });
    m_picture->setVisible(!pictured);
}

bool CZEBRuleDlgBase::PreTranslateMessage(QObject*, QEvent*) { return false; }

void CZEBRuleDlgBase::OnOK() { done(kIdOk); }

void CZEBRuleDlgBase::OnCancel() { done(kIdCancel); }

void CZEBRuleDlgBase::OnHelp() { ZebOpenHelp(this, m_helpFilePath, m_helpTopic); }

void CZEBRuleDlgBase::setVisible(bool visible) {
    if (visible && !m_initialized) {
        m_initialized = true;
        // As with a message loop, pre-translation starts when the dialog runs, not while it is
        // built.
        m_preTranslate->SetEnabled(true);
        OnInitDialog();
        ShowRuleImageUnlessPictured();
        adjustSize();
    }
    QDialog::setVisible(visible);
}
