#include "DeviceViewController.h"

#include "Form.h"
#include "Localized.h"
#include "ui_Device.h"

#include <QHeaderView>

namespace {

constexpr int keyColumn = 0;
constexpr int valueColumn = 1;
constexpr int tabWidth = 4; // spaces that a leading tab of a label is shown as
constexpr int gap = 16;     // pixels between the columns' texts

QTableWidgetItem *cell(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

// A label's indentation, which a cell would show as nothing.
QString indented(const QString &label)
{
    return QString(label).replace(u'\t', QString(tabWidth, u' '));
}

void fill(QTableWidget *table, const DeviceRows &rows)
{
    const QStringList labels = rows.getSortedKeys().value_or(QStringList());
    const QVariantMap values = rows.getDict().value_or(QVariantMap());
    table->setRowCount(static_cast<int>(labels.size()));
    for (int row = 0; row < labels.size(); ++row) {
        const QString text = DeviceRows::displayText(values.value(labels.at(row)));
        table->setItem(row, keyColumn, cell(indented(labels.at(row))));
        table->setItem(row, valueColumn, cell(text));
        table->item(row, valueColumn)->setToolTip(text);
    }
    table->resizeColumnToContents(keyColumn);
    table->setColumnWidth(keyColumn, table->columnWidth(keyColumn) + gap);
}

}

DeviceViewController::~DeviceViewController() = default;

DeviceViewController *DeviceViewController::getViewController()
{
    return new DeviceViewController;
}

DeviceViewController::DeviceViewController()
    : m_ui(madeForm<Ui::Device>(this))
{
}

void DeviceViewController::viewDidLoad()
{
    for (QTableWidget *table :
         {m_ui->generalTableView, m_ui->infoTableView, m_ui->statusTableView}) {
        table->horizontalHeader()->setStretchLastSection(true);
        table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        table->verticalHeader()->setDefaultSectionSize(
            table->verticalHeader()->minimumSectionSize());
    }
    initData();
    showStatusItem();
}

void DeviceViewController::initData()
{
    m_deviceGeneral = DeviceGeneral::initWithDevice(m_device);
    m_deviceInfo = DeviceInfo::initWithDevice(m_device);
    m_deviceStatus = DeviceStatus::initWithDevice(m_device);
    fill(m_ui->generalTableView, m_deviceGeneral);
    fill(m_ui->infoTableView, m_deviceInfo);
    fill(m_ui->statusTableView, m_deviceStatus);
}

void DeviceViewController::showStatusItem()
{
    QTabWidget *tabs = m_ui->tabView;
    const int place = tabs->indexOf(m_ui->statusItem);
    if (!m_device.mediaIsPresent() && place >= 0)
        tabs->removeTab(place);
    else if (m_device.mediaIsPresent() && place < 0)
        tabs->addTab(m_ui->statusItem, localized("Device", "Status"));
}
