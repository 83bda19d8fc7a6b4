<?xml version="1.0" encoding="UTF-8"?>
<!-- Prints the contents of a GNOME Planner document as the lines of in-source.xsl. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:key name="task" match="task" use="@id"/>
  <xsl:key name="resource" match="resource" use="@id"/>

  <xsl:template match="/project">
    <xsl:text>project|</xsl:text>
    <xsl:apply-templates select="@project-start" mode="date"/>
    <xsl:text>&#10;</xsl:text>
    <xsl:apply-templates select="tasks//task" mode="task"/>
    <xsl:apply-templates select="tasks//predecessor"/>
    <xsl:apply-templates select="resources/resource"/>
    <xsl:apply-templates select="allocations/allocation"/>
  </xsl:template>

  <xsl:template match="task" mode="task">
    <xsl:text>task|</xsl:text>
    <xsl:apply-templates select="." mode="path"/>
    <xsl:text>|</xsl:text>
    <xsl:apply-templates select="@start" mode="date"/>
    <xsl:text>|</xsl:text>
    <xsl:apply-templates select="@end" mode="date"/>
    <xsl:value-of select="concat('|duration ', @duration, '|work ', @work, '|done ', sum(@percent-complete[. != '']))"/>
    <xsl:if test="@type = 'milestone'">|milestone</xsl:if>
    <xsl:value-of select="concat('|note ', normalize-space(@note), '&#10;')"/>
  </xsl:template>

  <xsl:template match="predecessor">
    <xsl:text>link|</xsl:text>
    <xsl:apply-templates select="key('task', @predecessor-id)" mode="path"/>
    <xsl:text>|</xsl:text>
    <xsl:apply-templates select="../.." mode="path"/>
    <xsl:value-of select="concat('|', @type, '|', @lag, '&#10;')"/>
  </xsl:template>

  <xsl:template match="resource">
    <xsl:value-of select="concat('resource|', normalize-space(@name), '|')"/>
    <xsl:value-of select="concat(substring('work|material|', 1 + 5 * (@type = 2), 4), '|units ', number(@units), '|')"/>
    <xsl:value-of select="concat(@email, '|', format-number(sum(@std-rate[. != '']), '0.00'), '&#10;')"/>
  </xsl:template>

  <xsl:template match="allocation">
    <xsl:text>assignment|</xsl:text>
    <xsl:apply-templates select="key('task', @task-id)" mode="path"/>
    <xsl:value-of select="concat('|', normalize-space(key('resource', @resource-id)/@name), '|', @units, '&#10;')"/>
  </xsl:template>

  <xsl:template match="task" mode="path">
    <xsl:apply-templates select="parent::task" mode="path"/>
    <xsl:value-of select="concat('/', normalize-space(@name))"/>
  </xsl:template>

  <!-- Prints 20260112T083000Z as 2026-01-12T08:30:00; in spite of the Z, Planner's import writes wall-clock time. -->
  <xsl:template match="@*" mode="date">
    <xsl:value-of select="concat(substring(., 1, 4), '-', substring(., 5, 2), '-', substring(., 7, 2), 'T',
                                 substring(., 10, 2), ':', substring(., 12, 2), ':', substring(., 14, 2))"/>
  </xsl:template>
</xsl:stylesheet>
