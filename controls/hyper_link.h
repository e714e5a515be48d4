#pragma once

#include <QColor>
#include <QLabel>
#include <cstdint>
#include <string>

// Static text that acts as a link: blue and underlined, red while the mouse is over it, another
// colour once visited, with the hand cursor. A click opens its target (or its help file, or tells
// the parent) and marks it visited; so does Space once Tab has reached it.
class CHyperLink : public QLabel {
    Q_OBJECT
public:
    static constexpr unsigned kNotifyMessage = 0x465;  // the number parents handle a link click by
    static constexpr std::uint32_t kLinkColour = 0xFF0000;     // RGB(0, 0, 255)
    static constexpr std::uint32_t kHoverColour = 0x0000FF;    // RGB(255, 0, 0)
    static constexpr std::uint32_t kVisitedColour = 0x8F2205;  // RGB(5, 34, 143)

    explicit CHyperLink(QWidget* parent = nullptr);

    void SetLinkText(const std::wstring& text);
    void SetURL(const std::wstring& target) { m_target = target; }
    const std::wstring& GetURL() const { return m_target; }
    void SetLinkColour(const QColor& colour);
    void EnableTooltip(bool enable);
    void SetTooltipText(const std::wstring& text);
    // With `on`, a click opens `helpFile` at the section whose anchor is "topic-<contextId>"
    // (at its start for context id 0), or tells that the file is missing.
    void SetHelpLink(bool on, int contextId, const std::wstring& helpFile);
    void SetNotifyParent(bool on) { m_notifyParent = on; }

    bool IsVisited() const { return m_visited; }
    bool IsHovering() const { return m_hovering; }
    // Visited, else hovered, else the link colour.
    QColor CurrentColour() const;

signals:
    // Sent instead of opening the target when the parent asked to be told.
    void NotifyParent(unsigned message, int controlId);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void SetHovering(bool hovering);
    void ApplyColour();
    void Click();

    bool m_notifyParent = false;
    bool m_tooltipEnabled = false;
    bool m_hovering = false;
    bool m_visited = false;
    bool m_helpLink = false;
    int m_helpContextId = 0;
    std::wstring m_helpFile;
    std::wstring m_tooltip;
    std::wstring m_linkText;
    std::wstring m_target;
    QColor m_linkColour, m_hoverColour, m_visitedColour;
};
