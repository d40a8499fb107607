# The headers that most sources of the program include; each source names what it uses all the same.
set(core_headers
  <QByteArray> <QCoreApplication> <QDir> <QFile> <QHash> <QObject> <QPointer> <QSet> <QString> <QStringList> <QTimer>
  <QVariant> <QVector>
  <algorithm> <array> <atomic> <chrono> <functional> <memory> <mutex> <optional> <string> <thread> <vector>)
set(widget_headers
  <QApplication> <QBoxLayout> <QCheckBox> <QComboBox> <QDialog> <QFrame> <QGridLayout> <QLabel> <QLineEdit>
  <QMouseEvent> <QPainter> <QPixmap> <QPushButton> <QScreen> <QScrollArea> <QScrollBar> <QSlider> <QSpinBox>
  <QStackedWidget> <QStyle> <QStyleOption> <QTextEdit> <QToolButton> <QWidget>)
add_precompiled(precompiled_core LINKS Qt5::Core DEFINITIONS ${morlen_qt_definitions} HEADERS ${core_headers})
add_precompiled(precompiled_widgets LINKS Qt5::Widgets DEFINITIONS ${morlen_qt_definitions}
  HEADERS ${core_headers} ${widget_headers})
