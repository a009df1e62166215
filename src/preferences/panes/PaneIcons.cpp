#include "preferences/panes/PaneIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace {

class TintedSvgIconEngine final : public QIconEngine
{
public:
    explicit TintedSvgIconEngine(QString path) : m_path(std::move(path)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawImage(rect, tinted(rect.size() * ratio, mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        return QPixmap::fromImage(tinted(size, mode));
    }

    QIconEngine* clone() const override { return new TintedSvgIconEngine(m_path); }
    QString key() const override { return QStringLiteral("TintedSvgIconEngine"); }

private:
    QImage tinted(QSize size, QIcon::Mode mode) const
    {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        QSvgRenderer(m_path).render(&painter);
        // Keep the drawing's coverage, take the colour of the text beside it.
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        const QPalette palette = QGuiApplication::palette();
        painter.fillRect(image.rect(),
                         palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                                       QPalette::ButtonText));
        return image;
    }

    QString m_path;
};

QIcon tintedIcon(const QString& name)
{
    return QIcon(new TintedSvgIconEngine(QStringLiteral(":/preference-panes/%1.svg").arg(name)));
}

} // namespace

namespace PaneIcons {

QIcon general()
{
    return tintedIcon(QStringLiteral("pane_general"));
}

QIcon connection()
{
    return tintedIcon(QStringLiteral("pane_connection"));
}

QIcon lights()
{
    return tintedIcon(QStringLiteral("pane_lights"));
}

QIcon hotkeys()
{
    return tintedIcon(QStringLiteral("pane_hotkeys"));
}

} // namespace PaneIcons
