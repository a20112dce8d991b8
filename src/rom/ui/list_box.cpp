#include "rom/ui/list_box.h"

#include <QMouseEvent>
#include <QSignalBlocker>

ListBox::ListBox(QWidget* parent, const QString& name, const QRect& geometry) : QListWidget(parent)
{
    setObjectName(name);
    setGeometry(geometry);
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QListWidget::itemSelectionChanged, this, [this] {
        if (onSelect)
            onSelect(SelectedRow());
    });
    // A click on the selected line changes no selection, so it is caught here.
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (onSelect && index.row() == rowSelectedAtPress && index.row() == SelectedRow())
            onSelect(index.row());
    });
}

int ListBox::SelectedRow() const
{
    const QList<QListWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? -1 : row(selected.first());
}

void ListBox::ShowLines(const QStringList& lines, int selectedRow)
{
    const QSignalBlocker quiet(this);
    QStringList shown;
    for (int i = 0; i < count(); ++i)
        shown << item(i)->text();
    if (shown != lines) {
        clear();
        addItems(lines);
    }
    if (selectedRow >= 0)
        setCurrentRow(selectedRow, QItemSelectionModel::ClearAndSelect);
    else
        clearSelection();
}

void ListBox::mousePressEvent(QMouseEvent* event)
{
    rowSelectedAtPress = SelectedRow();
    QListWidget::mousePressEvent(event);
}
