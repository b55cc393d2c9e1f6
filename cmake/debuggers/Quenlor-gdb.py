# How gdb shows the strings and paths of the base library. gdb loads this with a libQuenlor5 that is installed in /usr;
# otherwise type: source <prefix>/share/gdb/auto-load/<prefix>/lib/libQuenlor5.so.VERSION-gdb.py
import gdb
import gdb.printing


def shows(member):
    """A printer that shows an object as this member, for which gdb has a printer."""

    class Printer:
        def __init__(self, value):
            self.value = value

        def to_string(self):
            return self.value[member]

    return Printer


printers = gdb.printing.RegexpCollectionPrettyPrinter("Quenlor5")
printers.add_printer("Utf8String", "^Quenlor::Utf8String$", shows("m_text"))
printers.add_printer("WString", "^Quenlor::WString$", shows("m_text"))
printers.add_printer("QnFileName", "^Quenlor::QnFileName$", shows("m_path"))
gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)
