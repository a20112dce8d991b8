#include "app/ui/wrap_button.h"

#include <QStyleOptionButton>
#include <QStylePainter>

void WrapButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const QString caption = option.text;
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
    const QRect textArea = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    painter.drawItemText(textArea, Qt::AlignCenter | Qt::TextWordWrap, palette(), isEnabled(), caption,
                         QPalette::ButtonText);
}
