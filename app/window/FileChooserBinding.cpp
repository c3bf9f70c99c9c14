// The file page's file list (filOpenFile) as a file chooser of Qt's own,
// embedded in the page: the user walks folders, filters by the page's
// pattern and picks or types a name, and the chooser yields the same path
// the lists would. Choosing a file sets the list's Path and FileName and
// raises its Click, which names the file in txtFileName; the chooser's Open
// and Cancel press the page's OK and Cancel (cmdOpenFile elements 0 and 1).
#include "app/window/WidgetBinding.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace kt500::window {

namespace {

// A chooser that stays on its page: Open and Cancel report, never hide it,
// so the page is never left empty.
class EmbeddedChooser final : public QFileDialog {
public:
    explicit EmbeddedChooser(QWidget* parent) : QFileDialog(parent, Qt::Widget) {
        setWindowFlags(Qt::Widget);
        setOption(QFileDialog::DontUseNativeDialog, true);
        setOption(QFileDialog::DontConfirmOverwrite, true);
        setFileMode(QFileDialog::AnyFile);
        setAcceptMode(QFileDialog::AcceptOpen);
        setSizeGripEnabled(false);
    }

protected:
    void done(int result) override {
        setResult(result);
        if (result == QDialog::Accepted) {
            emit accepted();
        } else {
            emit rejected();
        }
    }
};

class FileChooser final : public WidgetBinding {
public:
    FileChooser(form::Control& control, ViewContext& context, QWidget* parent)
        : WidgetBinding(control, context), m_widget(new EmbeddedChooser(parent)) {
        m_widget->setObjectName(Qs(control.displayName()));
        QObject::connect(m_widget, &QFileDialog::currentChanged, m_widget,
                         [this](const QString& path) { choose(path, false); });
        QObject::connect(m_widget, &QFileDialog::fileSelected, m_widget,
                         [this](const QString& path) { choose(path, true); });
        QObject::connect(m_widget, &QDialog::rejected, m_widget, [this] { press(1); });
    }
    [[nodiscard]] QWidget* widget() const override { return m_widget; }

    void mirror(form::PropertyId id, std::string_view /*key*/, int /*item*/) override {
        if (id == form::PropertyId::Path && !m_control.path().empty()) {
            m_widget->setDirectory(Qs(m_control.path()));
        } else if (id == form::PropertyId::Pattern) {
            const QString pattern = Qs(m_control.pattern().empty() ? "*" : m_control.pattern());
            m_widget->setNameFilter(pattern.split(u';').join(u' '));
        }
    }
    void mirrorAll() override {
        mirror(form::PropertyId::Pattern, {}, -1);
        mirror(form::PropertyId::Path, {}, -1);
    }

private:
    // A file (not a folder) named in the chooser: the list's Path and
    // FileName, then its Click; blOpen presses OK too.
    void choose(const QString& path, bool blOpen) {
        const QFileInfo file(path);
        if (path.isEmpty() || file.isDir()) {
            return;
        }
        deliver([this, folder = QDir::cleanPath(file.absolutePath()).toStdString(),
                 name = file.fileName().toStdString(), blOpen] {
            m_control.setPath(folder);
            m_control.setFileName(name);
            m_context.form.raiseClick(m_control);
            if (blOpen) {
                m_context.form.raiseClick(m_context.form.control("cmdOpenFile", 0));
            }
        });
    }
    void press(int intElement) {
        deliver([this, intElement] {
            m_context.form.raiseClick(m_context.form.control("cmdOpenFile", intElement));
        });
    }

    EmbeddedChooser* m_widget;
};

}  // namespace

std::unique_ptr<WidgetBinding> MakeFileChooserBinding(form::Control& control,
                                                      ViewContext& context, QWidget* parent) {
    return std::make_unique<FileChooser>(control, context, parent);
}

}  // namespace kt500::window
