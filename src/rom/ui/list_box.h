#pragma once
// A list box of the catalogue: it runs its command when the user selects another line,
// by mouse or keyboard, and when they click the line that is already selected.
// Lines and selection shown from the session run nothing.
#include <QListWidget>
#include <functional>

class ListBox : public QListWidget {
public:
    ListBox(QWidget* parent, const QString& name, const QRect& geometry);

    std::function<void(int)> onSelect; // the selected row, -1 for none

    void ShowLines(const QStringList& lines, int selectedRow);
    int SelectedRow() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    int rowSelectedAtPress = -1;
};
