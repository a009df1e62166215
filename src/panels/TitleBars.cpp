#include "panels/TitleBars.h"

#include "panels/Browser.h"
#include "panels/Theme.h"
#include "state/Preferences.h"
#include "state/ProductLinks.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtMath>

namespace {

constexpr qreal titleOpacity = 0.7;
constexpr int iconSize = 14;

void setTextColour(QWidget* widget, const QColor& colour)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    palette.setColor(QPalette::ButtonText, colour);
    palette.setColor(QPalette::Text, colour);
    widget->setPalette(palette);
}

QColor dimmedText(const QWidget* widget)
{
    QColor colour = Theme::text(Theme::isDark(widget));
    colour.setAlphaF(titleOpacity);
    return colour;
}

// Both icons are drawn in the palette's text colour, so they stand out on the window's background in the
// light and the dark appearance alike; an icon theme's picture may be dark on dark.
QIcon drawnGear(const QColor& colour)
{
    const int side = 64;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(side / 2.0, side / 2.0);

    QPainterPath cog;
    const int teeth = 8;
    for (int tooth = 0; tooth < teeth; ++tooth) {
        QPainterPath block;
        block.addRoundedRect(QRectF(-5, -side / 2.0 + 2, 10, 14), 2, 2);
        cog += QTransform().rotate(tooth * 360.0 / teeth).map(block);
    }
    QPainterPath ring;
    ring.addEllipse(QPointF(0, 0), 22, 22);
    cog += ring;
    QPainterPath hole;
    hole.addEllipse(QPointF(0, 0), 9, 9);
    painter.fillPath(cog - hole, colour);
    return QIcon(pixmap);
}

// Three bars: the usual sign of a menu, with no glyph a font might lack.
QIcon drawnMenu(const QColor& colour)
{
    const int side = 64;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const int top : {8, 28, 48})
        painter.drawRoundedRect(QRectF(4, top, side - 8, 9), 4, 4);
    return QIcon(pixmap);
}

void paintIcons(const QWidget* owner, QToolButton* settings, QToolButton* menu)
{
    const QColor colour = owner->palette().color(QPalette::WindowText);
    settings->setIcon(drawnGear(colour));
    menu->setIcon(drawnMenu(colour));
}

// Borderless buttons still show where the keyboard focus is.
QString focusVisibleStyle(const QString& extra = QString())
{
    return QStringLiteral("QToolButton { border: none; padding: 0; %1 }"
                          "QToolButton:focus { border: 2px solid %2; border-radius: 3px; }")
        .arg(extra, Theme::focusRing(false).name());
}

QToolButton* settingsIconButton(QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(QStringLiteral("settingsIconButton"));
    button->setAutoRaise(true);
    button->setIconSize(QSize(iconSize, iconSize));
    button->setFixedSize(iconSize, iconSize);
    button->setToolTip(QCoreApplication::translate("TitleBars", "Settings"));
    button->setAccessibleName(QCoreApplication::translate("TitleBars", "Settings"));
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(focusVisibleStyle());
    return button;
}

// The menu of the tray icon, for those who cannot reach the icon: the keyboard, a desktop without a tray.
QToolButton* menuIconButton(QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(QStringLiteral("menuButton"));
    button->setAutoRaise(true);
    button->setIconSize(QSize(iconSize, iconSize));
    button->setFixedSize(iconSize, iconSize);
    button->setToolTip(QCoreApplication::translate("TitleBars", "Menu (Shift+F10)"));
    button->setAccessibleName(QCoreApplication::translate("TitleBars", "Menu"));
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(focusVisibleStyle());
    return button;
}

QFont systemFont(qreal pointSize, QFont::Weight weight)
{
    QFont font;
    font.setPointSizeF(pointSize);
    font.setWeight(weight);
    return font;
}

} // namespace

WelcomeTitlebarView::WelcomeTitlebarView(QWidget* parent)
    : QWidget(parent), m_name(new QLabel(QStringLiteral("Glowdeck"), this)),
      m_settings(settingsIconButton(this)), m_menu(menuIconButton(this))
{
    m_name->setObjectName(QStringLiteral("productName"));
    m_name->setFont(systemFont(13, QFont::Normal));
    m_name->setAlignment(Qt::AlignCenter);
    m_name->setContentsMargins(0, 15, 0, 15);

    // The same gear as in the title bar with lights, so the way to the settings never changes its look.
    connect(m_settings, &QToolButton::clicked, this, &WelcomeTitlebarView::settingsRequested);
    connect(m_menu, &QToolButton::clicked, this, [this] { Q_EMIT menuRequested(m_menu); });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addStretch();
    layout->addWidget(m_name);
    layout->addWidget(m_settings);
    layout->addWidget(m_menu);
    layout->addStretch();
    applyColours();
}

void WelcomeTitlebarView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        applyColours();
    QWidget::changeEvent(event);
}

void WelcomeTitlebarView::applyColours()
{
    setTextColour(m_name, dimmedText(this));
    paintIcons(this, m_settings, m_menu);
}

RegularTitlebarView::RegularTitlebarView(Preferences& preferences, const ProductLinks& links, QWidget* parent)
    : QWidget(parent), m_preferences(preferences), m_review(links.review),
      m_name(new QLabel(QStringLiteral("Glowdeck"), this)),
      m_reviewText(new QLabel(tr("Got a second?"), this)), m_heart(new QToolButton(this)),
      m_settingsButton(settingsIconButton(this)), m_menuButton(menuIconButton(this))
{
    m_name->setObjectName(QStringLiteral("productName"));
    m_name->setFont(systemFont(12, QFont::Bold));
    m_name->setContentsMargins(12, 12, 12, 12);

    m_reviewText->setObjectName(QStringLiteral("reviewText"));
    m_reviewText->setFont(systemFont(12, QFont::Light));
    m_reviewText->setContentsMargins(12, 12, 12, 12);

    // A text heart keeps the program free of image assets and follows the desktop's font colour.
    m_heart->setObjectName(QStringLiteral("reviewButton"));
    m_heart->setText(QStringLiteral("\u2665"));
    m_heart->setToolTip(tr("Write a review"));
    m_heart->setAutoRaise(true);
    m_heart->setCursor(Qt::PointingHandCursor);
    m_heart->setFixedHeight(iconSize);
    m_heart->setFont(systemFont(11, QFont::Normal));
    m_heart->setAccessibleName(tr("Write a review"));
    m_heart->setStyleSheet(focusVisibleStyle(QStringLiteral("color: #e0245e;")));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 10, 0);
    layout->setSpacing(0);
    layout->addWidget(m_name);
    layout->addWidget(m_reviewText);
    layout->addWidget(m_heart);
    layout->addStretch();
    layout->addWidget(m_settingsButton);
    layout->addSpacing(4);
    layout->addWidget(m_menuButton);

    connect(m_heart, &QToolButton::clicked, this, &RegularTitlebarView::onReviewClicked);
    connect(m_settingsButton, &QToolButton::clicked, this, &RegularTitlebarView::settingsRequested);
    connect(m_menuButton, &QToolButton::clicked, this, [this] { Q_EMIT menuRequested(m_menuButton); });
    connect(&m_preferences, &Preferences::reviewRequestChanged, this,
            &RegularTitlebarView::onShowReviewRequestChanged);
    onShowReviewRequestChanged();
    applyColours();
}

void RegularTitlebarView::onShowReviewRequestChanged()
{
    const bool asking = m_preferences.showReviewRequest();
    m_name->setVisible(!asking);
    m_reviewText->setVisible(asking);
    m_heart->setVisible(asking);
}

void RegularTitlebarView::onReviewClicked()
{
    Browser::open(m_review);
    m_preferences.setReviewed(QCoreApplication::applicationVersion());
    m_preferences.setShowReviewRequest(false);
}

void RegularTitlebarView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        applyColours();
    QWidget::changeEvent(event);
}

void RegularTitlebarView::applyColours()
{
    setTextColour(m_name, dimmedText(this));
    setTextColour(m_reviewText, dimmedText(this));
    paintIcons(this, m_settingsButton, m_menuButton);
}
