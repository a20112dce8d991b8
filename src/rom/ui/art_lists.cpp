// The art list (one line per art table) and the frame list (one line per frame).
#include "app/ui/commands.h"
#include "app/ui/form1.h"

#include <QListWidget>
#include <QSignalBlocker>

namespace {
QString LineText(int32_t value) { return QString::number(uint32_t(value), 16).toUpper(); }
}

int SelectedRow(const QListWidget* list)
{
    const QList<QListWidgetItem*> selected = list->selectedItems();
    return selected.isEmpty() ? -1 : list->row(selected.first());
}

void SelectRowQuietly(QListWidget* list, int row)
{
    const QSignalBlocker quiet(list);
    list->setCurrentRow(row, QItemSelectionModel::ClearAndSelect);
}

void FillArtLists(Form1& form)
{
    // Filling never selects a line and never starts a selection command.
    const QSignalBlocker quietArt(form.List1);
    const QSignalBlocker quietFrames(form.List2);
    form.List2->clear();
    const int selectedTable = SelectedRow(form.List1);
    EditorState& state = form.state;
    if (!state.artListFilled) {
        for (const ArtTable& table : state.artTables) {
            if (table.position == 0)
                break;
            form.List1->addItem(LineText(table.position));
        }
        state.artListFilled = true;
    }
    const ArtTable& table = state.artTables[size_t(std::max(selectedTable, 0))];
    for (int32_t pointer : table.pointers) {
        if (pointer == 0)
            break;
        form.List2->addItem(LineText(pointer));
    }
}

void List1_Click(Form1& form)
{
    FillArtLists(form);
    RefreshView(form);
}

void List2_Click(Form1& form) { RefreshView(form); }
