#include "app/window/WindowPictures.h"

#include "app/window/MainWindow.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace kt500::window {

namespace {

// The user's part: closes every box that opens, by its default button.
class Answerer {
public:
    explicit Answerer(std::ostream& out) {
        m_timer.setInterval(20);
        QObject::connect(&m_timer, &QTimer::timeout, [&out] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                out << "  message: " << box->windowTitle().toStdString() << " | "
                    << box->text().toStdString() << '\n';
                QAbstractButton* button = box->defaultButton();
                box->done(button != nullptr ? box->standardButton(button) : QMessageBox::Ok);
            }
        });
        m_timer.start();
    }

private:
    QTimer m_timer;
};

// A typed value, as the user edits a field: focus, a key, the text, away.
void Type(DesktopSession& session, const char* name, int index, const std::string& text) {
    form::Form& form = session.view().form();
    form::Control& control = form.control(name, index);
    session.gate().run([&] {
        form.raiseGotFocus(control);
        (void)form.raiseKeyPress(control, static_cast<unsigned char>(text.front()));
        control.setText(text);
        form.raiseLostFocus(control);
    });
}

void Node(DesktopSession& session, const std::string& key) {
    form::Form& form = session.view().form();
    session.gate().run([&] { form.raiseNodeClick(form.control("treeNavigation"), key); });
}

struct Picture {
    const char* file;
    QSize size;
    bool online;
    const char* language;
    std::function<void(MainWindow&)> act;
};

}  // namespace

int WriteWindowPictures(const std::filesystem::path& shareDir,
                        const std::filesystem::path& folder, std::ostream& out) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const Answerer answerer(out);
    const auto readAll = [](MainWindow& window) {
        window.session()->view().toolbarAction("uploadAll")->trigger();
        window.session()->settle();
        Node(*window.session(), "operationUnit");
    };
    const Picture pictures[] = {
        {"window1280x800.png", {1280, 800}, true, "1033", readAll},
        {"window1920x1080.png", {1920, 1080}, true, "1033", readAll},
        {"windowOffline.png", {1280, 800}, false, "1033",
         [](MainWindow& window) { Node(*window.session(), "valveRelatedConfigurations"); }},
        {"windowGerman.png", {1280, 800}, true, "1031", readAll},
        {"windowChangedAndRefused.png", {1280, 800}, true, "1033",
         [](MainWindow& window) {
             DesktopSession& session = *window.session();
             session.settle();
             Node(session, "alertSettings");
             session.settle();
             Type(session, "txtHAAlertLimit", 1, "75");
             Type(session, "txtHAAlertLimit", 0, "150");
         }},
        {"windowConfirmation.png", {1280, 800}, true, "1033",
         [](MainWindow& window) {
             DesktopSession& session = *window.session();
             session.settle();
             Node(session, "operationUnit");
             Type(session, "txtHAOperationUnit", 0, "FV-2041");
             Type(session, "txtHAOperationUnit", 1, "Feed pump valve B");
             session.view().toolbarAction("send")->trigger();
         }},
    };
    int result = 0;
    for (const Picture& picture : pictures) {
        QTemporaryDir settings;
        MainWindow window(shareDir, settings.path(), settings.filePath(QStringLiteral("w.ini")));
        simulator::SessionOptions options;
        options.online = picture.online;
        options.language = picture.language;
        options.frameLanguage = picture.language;
        window.startSession(options);
        window.session()->setRealTime(false);
        window.resize(picture.size);
        window.show();
        picture.act(window);
        window.session()->settle();
        window.refreshStatus();
        QCoreApplication::processEvents();
        const std::filesystem::path file = folder / picture.file;
        if (window.grab().save(QString::fromStdString(file.string()))) {
            out << file.string() << '\n';
        } else {
            out << "kt500-dtm: cannot write " << file.string() << '\n';
            result = 1;
        }
    }
    return result;
}

}  // namespace kt500::window
