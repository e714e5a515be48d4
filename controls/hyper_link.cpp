#include "controls/hyper_link.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include "controls/colorref.h"
#include "framework/ui/control_id.h"
#include "framework/ui/ui_service.h"

CHyperLink::CHyperLink(QWidget* parent)
    : QLabel(parent),
      m_linkColour(ColorFromRef(kLinkColour)),
      m_hoverColour(ColorFromRef(kHoverColour)),
      m_visitedColour(ColorFromRef(kVisitedColour)) {
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
    setCursor(Qt::PointingHandCursor);
    setMouseTracking(true);
    // Reached with Tab, not taken by a click: Space opens it from the keyboard.
    setFocusPolicy(Qt::TabFocus);
    ApplyColour();
}

void CHyperLink::SetLinkText(const std::wstring& text) {
    m_linkText = text;
    if (this->text().isEmpty()) setText(QString::fromStdWString(text));
}

void CHyperLink::SetLinkColour(const QColor& colour) {
    m_linkColour = colour;
    ApplyColour();
}

void CHyperLink::EnableTooltip(bool enable) {
    m_tooltipEnabled = enable;
    setToolTip(enable ? QString::fromStdWString(m_tooltip) : QString());
}

void CHyperLink::SetTooltipText(const std::wstring& text) {
    m_tooltip = text;
    EnableTooltip(m_tooltipEnabled);
}

void CHyperLink::SetHelpLink(bool on, int contextId, const std::wstring& helpFile) {
    m_helpLink = on;
    m_helpContextId = contextId;
    m_helpFile = helpFile;
}

QColor CHyperLink::CurrentColour() const {
    return m_visited ? m_visitedColour : m_hovering ? m_hoverColour : m_linkColour;
}

void CHyperLink::ApplyColour() {
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, CurrentColour());
    setPalette(colours);
}

void CHyperLink::SetHovering(bool hovering) {
    if (m_hovering == hovering) return;
    m_hovering = hovering;
    ApplyColour();
    repaint();
}

void CHyperLink::mouseMoveEvent(QMouseEvent* event) {
    SetHovering(rect().contains(event->position().toPoint()));
    QLabel::mouseMoveEvent(event);
}

void CHyperLink::leaveEvent(QEvent* event) {
    SetHovering(false);
    QLabel::leaveEvent(event);
}

void CHyperLink::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) Click();
}

void CHyperLink::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier) {
        QLabel::keyPressEvent(event);
        return;
    }
    Click();
}

void CHyperLink::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void CHyperLink::Click() {
    IZebUiService* service = GetZebUiService();
    if (m_notifyParent) {
        emit NotifyParent(kNotifyMessage, GetZebControlId(this));
    } else if (m_helpLink) {
        // The help file at the section of the context id ("topic-<id>"); 0 names no section.
        ZebOpenHelp(
            window(), m_helpFile,
            m_helpContextId != 0 ? L"topic-" + std::to_wstring(m_helpContextId) : std::wstring());
    } else if (service) {
        service->ShellOpen(m_target);
    }
    m_visited = true;
    ApplyColour();
    update();
}
