// Renders an SVG icon to PNG files of the given sizes, for the hicolor icon theme's fixed-size folders. Used
// at build time only, so that the repository holds the drawings and no binaries made from them.
//
//     glowdeck-render-icon ICON.svg SIZE:OUT.png [SIZE:OUT.png...]

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

bool render(QSvgRenderer& svg, int size, const QString& fileName)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    svg.render(&painter, QRectF(0, 0, size, size));
    painter.end();
    return image.save(fileName, "PNG");
}

} // namespace

int main(int argc, char* argv[])
{
    // Paths and gradients only: painting into an image needs no display, nor a GUI application object.
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: glowdeck-render-icon ICON.svg SIZE:OUT.png [SIZE:OUT.png...]\n", stderr);
        return 2;
    }

    QSvgRenderer svg(arguments.at(1));
    if (!svg.isValid()) {
        std::fprintf(stderr, "glowdeck-render-icon: cannot read %s\n", qPrintable(arguments.at(1)));
        return 1;
    }
    for (const QString& target : arguments.mid(2)) {
        bool ok = false;
        const int size = target.section(u':', 0, 0).toInt(&ok);
        const QString fileName = target.section(u':', 1);
        if (!ok || size < 1 || size > 4096 || fileName.isEmpty()) {
            std::fprintf(stderr, "glowdeck-render-icon: expected SIZE:OUT.png, not %s\n", qPrintable(target));
            return 2;
        }
        if (!render(svg, size, fileName)) {
            std::fprintf(stderr, "glowdeck-render-icon: cannot write %s\n", qPrintable(fileName));
            return 1;
        }
    }
    return 0;
}
