#pragma once

#include "screens/DesktopSettings.h"
#include "screens/ThemePalette.h"

#include <QQmlEngine>

namespace mirel {

// The colours and the pace of the screens, by role. One per QML engine.
class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // The name of a theme, or "system", which follows the desktop. An unknown name is ignored.
    Q_PROPERTY(QString appearance READ appearance WRITE setAppearance NOTIFY changed)
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    Q_PROPERTY(QColor background READ background NOTIFY changed)
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    Q_PROPERTY(QColor raised READ raised NOTIFY changed)
    Q_PROPERTY(QColor border READ border NOTIFY changed)
    Q_PROPERTY(QColor text READ text NOTIFY changed)
    Q_PROPERTY(QColor secondary READ secondary NOTIFY changed)
    Q_PROPERTY(QColor tertiary READ tertiary NOTIFY changed)
    Q_PROPERTY(QColor tint READ tint NOTIFY changed)
    Q_PROPERTY(QColor onTint READ onTint NOTIFY changed)
    Q_PROPERTY(QColor hovered READ hovered NOTIFY changed)
    Q_PROPERTY(QColor current READ current NOTIFY changed)
    Q_PROPERTY(QColor warning READ warning NOTIFY changed)
    Q_PROPERTY(QColor failure READ failure NOTIFY changed)
    Q_PROPERTY(QColor success READ success NOTIFY changed)
    // What marks a picture lies on a veil, whatever the theme.
    Q_PROPERTY(QColor veil READ veil CONSTANT)
    Q_PROPERTY(QColor onVeil READ onVeil CONSTANT)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)
    // In milliseconds; 0 when the desktop asks for reduced motion.
    Q_PROPERTY(int motion READ motion NOTIFY changed)

public:
    // `desktop` outlives the theme.
    explicit Theme(DesktopSettings& desktop, QObject* parent = nullptr);

    // Names the desktop that the themes of `engine` follow. It outlives the engine.
    static void setDesktop(QQmlEngine& engine, DesktopSettings& desktop);
    [[nodiscard]] static Theme* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    // The colour behind the initials of an author, and of the initials themselves.
    [[nodiscard]] Q_INVOKABLE QColor avatarColor(double authorID) const;
    [[nodiscard]] Q_INVOKABLE QColor readableOn(const QColor& surface) const;
    // A label's own colour, or the quiet one when `hex` is none.
    [[nodiscard]] Q_INVOKABLE QColor labelColor(const QString& hex) const;

    [[nodiscard]] QString appearance() const { return m_appearance; }
    void setAppearance(const QString& appearance);

    [[nodiscard]] bool isDark() const { return m_palette->isDark; }
    [[nodiscard]] QColor background() const { return m_palette->background; }
    [[nodiscard]] QColor surface() const { return m_palette->surface; }
    [[nodiscard]] QColor raised() const { return m_palette->raised; }
    [[nodiscard]] QColor border() const { return m_palette->border; }
    [[nodiscard]] QColor text() const { return m_palette->text; }
    [[nodiscard]] QColor secondary() const { return m_palette->secondary; }
    [[nodiscard]] QColor tertiary() const { return m_palette->tertiary; }
    [[nodiscard]] QColor tint() const { return m_palette->tint; }
    [[nodiscard]] QColor onTint() const { return m_palette->onTint(); }
    [[nodiscard]] QColor hovered() const { return m_palette->hovered(); }
    [[nodiscard]] QColor current() const { return m_palette->current(); }
    [[nodiscard]] QColor warning() const { return m_palette->warning(); }
    [[nodiscard]] QColor failure() const { return m_palette->failure(); }
    [[nodiscard]] QColor success() const { return m_palette->success(); }
    [[nodiscard]] QColor veil() const { return QColor(0, 0, 0, 166); }
    [[nodiscard]] QColor onVeil() const { return QColor(Qt::white); }
    [[nodiscard]] double textScale() const { return m_desktop.values().textScale; }
    [[nodiscard]] int motion() const { return m_desktop.values().reducesMotion ? 0 : 150; }

Q_SIGNALS:
    void changed();

private:
    void choosePalette();

    DesktopSettings& m_desktop;
    QString m_appearance = QStringLiteral("system");
    const ThemePalette* m_palette = nullptr;
};

} // namespace mirel
